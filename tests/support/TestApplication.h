#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "app/AppDelegate.h"
#include "browsing/history/HistoryStore.h"
#include "platform/headless/HeadlessPlatform.h"
#include "tests/support/RecordingSubsystems.h"
#include "tests/support/UrlSupport.h"

namespace velto::test {

/// The whole application on the headless platform, with doubles for what lies around it. Change the
/// environment and the preferences first, then `start` it as the desktop would, or only `make` it.
class TestApplication {
 public:
  TestApplication() {
    headless.onFailure = [](const std::string& failure) { ADD_FAILURE() << failure; };
    subsystems.newestWebPage = [this] {
      return newestWebPage({headless.files(), "/data/Velto", HistoryStore::kPrimaryFileName, true});
    };
    headless.webEngine().onLog = [this](const std::string& entry) { subsystems.note("engine: " + entry); };
  }
  ~TestApplication() {
    headless.webEngine().onLog = nullptr;
    quit();
  }
  TestApplication(const TestApplication&) = delete;
  TestApplication& operator=(const TestApplication&) = delete;

  HeadlessPlatform headless;
  RecordingSubsystems subsystems;

  void setTestMode(const std::string& value = "1") {
    headless.environment().variables["HOVREL_UI_TEST_MODE"] = value;
  }
  void writeHistory(const std::string& json) {
    headless.files().createDirectory("/data/Velto");
    headless.files().writeAtomically("/data/Velto/History.json", json);
  }

  AppDelegate& make() {
    delegate_ = std::make_unique<AppDelegate>(headless.platform(), subsystems.services(),
                                              subsystems.furniture(), subsystems.content());
    headless.application().setDelegate(*delegate_);
    return *delegate_;
  }
  /// Made and launched; what it queued has not run yet.
  AppDelegate& start() {
    make();
    headless.application().launch();
    return *delegate_;
  }
  /// Started, come to rest, and the log emptied.
  AppDelegate& settle() {
    start();
    settleDown();
    subsystems.log.clear();
    return *delegate_;
  }
  void settleDown() { headless.loop().drain(); }
  /// Everything that the application owns is gone; its queue is not.
  void quit() { delegate_.reset(); }

  [[nodiscard]] AppDelegate& delegate() { return *delegate_; }
  [[nodiscard]] CallLog& log() { return subsystems.log; }

  /// The URLs arrive from outside, and what they ask for is carried out.
  void receive(const std::vector<std::string>& texts) {
    std::vector<Url> urls;
    for (const std::string& text : texts) urls.push_back(url(text));
    delegate_->applicationOpenURLs(urls);
    settleDown();
  }
  /// Opens a window; its page is still on its way.
  HovrelPanel& openWindow(std::string_view page, const WindowOptions& options = {}) {
    delegate_->opener().openWindow(url(page), options);
    return lastPanel();
  }
  /// Opens a window and lets its page finish.
  HovrelPanel& showWindow(std::string_view page, const WindowOptions& options = {}) {
    HovrelPanel& panel = openWindow(page, options);
    settleDown();
    return panel;
  }

  [[nodiscard]] std::size_t panelCount() { return delegate_->hovrelWindows().panels().size(); }
  [[nodiscard]] HovrelPanel& panel(std::size_t index) {
    return *delegate_->hovrelWindows().panels().at(index);
  }
  [[nodiscard]] HovrelPanel& lastPanel() { return *delegate_->hovrelWindows().panels().back(); }
  /// The addresses of the open windows, oldest first.
  [[nodiscard]] std::vector<std::string> pages() {
    std::vector<std::string> all;
    for (const auto& panel : delegate_->hovrelWindows().panels()) {
      const auto shown = panel->webView->url();
      all.push_back(shown ? shown->absoluteString() : "(none)");
    }
    return all;
  }
  [[nodiscard]] static HeadlessWebView& pageOf(const HovrelPanel& panel) {
    return dynamic_cast<HeadlessWebView&>(*panel.webView);
  }
  [[nodiscard]] static FakeControlBarView& barOf(const HovrelPanel& panel) {
    return dynamic_cast<FakeControlBarView&>(*panel.controlBarView);
  }

 private:
  std::unique_ptr<AppDelegate> delegate_;
};

/// Where the entry stands in the log; fails the test when it is not there.
inline std::ptrdiff_t positionOf(const CallLog& log, std::string_view entry) {
  const auto found = std::find(log.begin(), log.end(), entry);
  if (found == log.end()) ADD_FAILURE() << "never called: " << entry;
  return found - log.begin();
}

}  // namespace velto::test
