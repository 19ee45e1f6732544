#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/web/WebView.h"

namespace velto {

/// Writes down what a web view tells, as "start 1", "commit 1", "finish 1", "fail provisionally 2 -999".
class PageRecorder final : public NavigationDelegate, public UIDelegate {
 public:
  void didStartProvisionalNavigation(WebView& view, Navigation n) override { note("start", view, n); }
  void didCommitNavigation(WebView& view, Navigation n) override { note("commit", view, n); }
  void didFinishNavigation(WebView& view, Navigation n) override { note("finish", view, n); }
  void didFailProvisionalNavigation(WebView& view, Navigation n, const WebError& error) override {
    lastError = error;
    note("fail provisionally", view, n, " " + std::to_string(error.code));
  }
  void didFailNavigation(WebView& view, Navigation n, const WebError& error) override {
    lastError = error;
    note("fail", view, n, " " + std::to_string(error.code));
  }
  void webContentProcessDidTerminate(WebView&) override { log.emplace_back("terminated"); }
  void webContentResponsivenessChanged(WebView&, bool responsive) override {
    log.emplace_back(responsive ? "responsive" : "not responsive");
  }
  void runBeforeUnloadConfirmPanel(WebView&, const std::optional<Url>&,
                                   std::function<void(bool)> completion) override {
    log.emplace_back("asked");
    questions.push_back(std::move(completion));
  }

  /// What was written down since the last call.
  std::vector<std::string> take() { return std::exchange(log, {}); }

  std::vector<std::string> log;
  std::vector<std::function<void(bool)>> questions;
  WebError lastError;
  /// Called from within each navigation event with its line.
  std::function<void(WebView&, const std::string&)> onEvent;

 private:
  void note(const std::string& what, WebView& view, Navigation n, const std::string& more = "") {
    const std::string line = what + " " + std::to_string(n.number) + more;
    log.push_back(line);
    if (const auto tell = onEvent) tell(view, line);
  }
};

}  // namespace velto
