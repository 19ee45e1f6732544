#pragma once

#include <functional>
#include <optional>
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
  void runJavaScriptAlertPanel(WebView&, const std::string& text, std::function<void()> completion) override {
    log.push_back("alert " + text);
    alerts.push_back(std::move(completion));
  }
  void runJavaScriptConfirmPanel(WebView&, const std::string& text,
                                 std::function<void(bool)> completion) override {
    log.push_back("confirm " + text);
    questions.push_back(std::move(completion));
  }
  void runJavaScriptTextInputPanel(WebView&, const std::string& text, const std::string& defaultText,
                                   std::function<void(std::optional<std::string>)> completion) override {
    log.push_back("prompt " + text + " [" + defaultText + "]");
    prompts.push_back(std::move(completion));
  }
  void createWebView(WebView&, const PageWindowRequest& request) override {
    log.push_back("window " + (request.url ? request.url->absoluteString() : "-"));
    windows.push_back(request);
  }
  void runOpenPanel(WebView&, const OpenPanel& parameters, OpenPanelCompletion completion) override {
    log.emplace_back("files");
    panels.push_back(parameters);
    fileQuestions.push_back(std::move(completion));
  }

  /// What was written down since the last call.
  std::vector<std::string> take() { return std::exchange(log, {}); }

  std::vector<std::string> log;
  /// Of leaving a page and of `confirm`.
  std::vector<std::function<void(bool)>> questions;
  std::vector<std::function<void()>> alerts;
  std::vector<std::function<void(std::optional<std::string>)>> prompts;
  std::vector<PageWindowRequest> windows;
  std::vector<OpenPanel> panels;
  std::vector<OpenPanelCompletion> fileQuestions;
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
