#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/ui/Window.h"
#include "tests/contract/ContractSite.h"
#include "tests/platform/headless/PageRecorder.h"

namespace velto::test {

/// A web view in a window, and a site to visit.
class WebContract : public testing::Test {
 protected:
  static constexpr Rect kFrame{{40, 40}, {320, 240}};

  void SetUp() override { open({}); }
  void TearDown() override { close(); }

  /// Another web view in the place of the one that is there.
  void open(WebViewConfiguration configuration) {
    close();
    window_ = std::make_unique<Window>(contract.platform().application, kFrame, style_mask::kTitled);
    auto made = contract.platform().webEngine.makeWebView({{0, 0}, kFrame.size}, std::move(configuration));
    webView = made.get();
    webView->setNavigationDelegate(static_cast<NavigationDelegate*>(&recorder));
    webView->setUIDelegate(static_cast<UIDelegate*>(&recorder));
    auto content = std::make_unique<View>(Rect{{0, 0}, kFrame.size});
    content->addSubview(std::move(made));
    window_->setContentView(std::move(content));
    window_->orderFrontRegardless();
  }
  /// The web view goes with its window.
  void close() {
    webView = nullptr;
    if (window_) window_->close();
    window_.reset();
  }

  std::uint64_t load(const Url& url, double timeout = 60) {
    return webView->load({url, timeout}).value().number;
  }
  bool waitFor(const std::string& line) {
    return contract.runUntil(
        [&] { return std::find(recorder.log.begin(), recorder.log.end(), line) != recorder.log.end(); });
  }
  /// Loads the page whole and forgets what was told of it.
  void visit(const Url& url) {
    ASSERT_TRUE(waitFor("finish " + std::to_string(load(url))));
    recorder.take();
  }
  static std::string line(const std::string& what, std::uint64_t number, const std::string& more = "") {
    return what + " " + std::to_string(number) + more;
  }

  /// What is told of a load that succeeds.
  static std::vector<std::string> wholeLoad(std::uint64_t number) {
    return {line("start", number), line("commit", number), line("finish", number)};
  }

  ContractPlatform contract;
  ContractSite site{contract};
  PageRecorder recorder;
  WebView* webView = nullptr;

 private:
  std::unique_ptr<Window> window_;
};

}  // namespace velto::test
