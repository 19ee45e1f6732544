#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "app/AppDelegate.h"
#include "layouts/OpenWindowCapture.h"
#include "layouts/StandardLayouts.h"
#include "platform/headless/HeadlessPlatform.h"
#include "tests/support/RecordingSubsystems.h"
#include "tests/support/UrlSupport.h"

namespace velto::test {

/// A display with a panel of 40 at its lower edge.
inline Screen screen(std::string name, const Rect& frame, std::uint32_t serial = 0) {
  Screen made;
  made.name = std::move(name);
  made.frame = frame;
  made.visibleFrame = {{frame.minX(), frame.minY() + 40}, {frame.size.width, frame.size.height - 40}};
  if (serial > 0) made.vendor = 1552;
  made.serial = serial;
  return made;
}

/// The application with its real layouts and session, and doubles for the rest. It can be started again on
/// the same disk.
class LayoutsApplication {
 public:
  LayoutsApplication() {
    headless.onFailure = [](const std::string& failure) { ADD_FAILURE() << failure; };
    setScreens({kMain});
  }
  ~LayoutsApplication() { kill(); }

  inline static const Screen kMain = screen("Main", {{0, 0}, {1600, 1040}}, 1);
  inline static const Screen kRight = screen("Right", {{1600, 0}, {1200, 840}}, 2);

  HeadlessPlatform headless;
  RecordingSubsystems doubles;
  std::optional<StandardLayouts> layouts;
  std::unique_ptr<AppDelegate> delegate;

  void setScreens(std::vector<Screen> screens) { headless.windowSystem().setScreens(std::move(screens)); }

  LayoutsApplication& start() {
    kill();
    const Services all = doubles.services();
    layouts.emplace(headless.platform(), all.toasts);
    delegate = std::make_unique<AppDelegate>(
        headless.platform(),
        Services{layouts->sessions(), layouts->layouts(), all.history, all.signInHandoff, all.signInSync,
                 all.safariImport, all.maintenance, all.toasts},
        doubles.furniture(), doubles.content());
    headless.application().setDelegate(*delegate);
    headless.application().launch();
    headless.loop().drain();
    return *this;
  }
  void quit() {
    delegate->applicationWillTerminate();
    kill();
  }
  /// Without a last word, and with what waits for the disk lost.
  void kill() {
    delegate.reset();
    layouts.reset();
    headless.loop().discardAll();
    headless.backgroundQueue().discardAll();
  }

  HovrelPanel& show(std::string_view page, const WindowOptions& options = {}) {
    delegate->opener().openWindow(url(page), options);
    headless.loop().drain();
    return *panels().back();
  }
  /// At the frame, in global coordinates.
  HovrelPanel& show(std::string_view page, const Rect& frame) {
    HovrelPanel& panel = show(page);
    panel.setFrame(frame);
    return panel;
  }
  void close(HovrelPanel& panel) {
    panel.close();
    headless.loop().drain();
  }
  void command(const std::string& query) {
    delegate->applicationOpenURLs({url("velto://layout" + query)});
    headless.loop().drain();
  }
  void answer(std::string_view button, std::optional<std::string> text = std::nullopt) {
    headless.windowSystem().answerAlert(button, std::move(text));
    headless.loop().drain();
  }

  [[nodiscard]] LayoutManager& manager() { return layouts->manager(); }
  [[nodiscard]] LayoutStore& store() { return layouts->manager().store(); }
  [[nodiscard]] std::vector<Layout> stored() { return store().loadAll().layouts; }
  [[nodiscard]] std::vector<HovrelPanel*> panels() { return openPanels(headless.application()); }
  /// "<address> <x>,<y> <width>x<height>" of each open window, oldest first, in global coordinates.
  [[nodiscard]] std::vector<std::string> windows() {
    std::vector<std::string> all;
    for (const HovrelPanel* panel : panels()) {
      const Rect& frame = panel->frame();
      all.push_back(panel->webView->url()->absoluteString() + " " + textOf(frame.minX()) + "," +
                    textOf(frame.minY()) + " " + textOf(frame.size.width) + "x" + textOf(frame.size.height));
    }
    return all;
  }
  /// "title: text [buttons]" of those that wait.
  [[nodiscard]] std::vector<std::string> alerts() {
    std::vector<std::string> all;
    for (const Alert& alert : headless.windowSystem().alerts()) {
      std::string line = alert.messageText + ": " + alert.informativeText + " [";
      for (const std::string& button : alert.buttons) {
        line += (line.back() == '[' ? "" : "|") + button;
      }
      all.push_back(line + "]");
    }
    return all;
  }
  [[nodiscard]] std::vector<std::string> toasts() {
    std::vector<std::string> all;
    for (const std::string& line : doubles.takeLog()) {
      if (line.starts_with("toast: ")) all.push_back(line.substr(7));
    }
    return all;
  }
};

}  // namespace velto::test
