#pragma once

#include <functional>

#include "app/pages/DebugLog.h"
#include "app/pages/PageWindows.h"
#include "app/windows/OpenWindows.h"
#include "app/windows/PageQuestions.h"
#include "app/windows/WindowLife.h"
#include "platform/Platform.h"
#include "platform/web/WebView.h"

namespace velto {

/// UI delegate of every page: asks the person on the page's behalf, in sheets on the page's window.
///
/// Nothing that a page asks keeps its window from closing: what is open then counts as cancelled, and what
/// the page asks until the window has closed is cancelled unseen. The one question that the person must see
/// is whether to leave the page.
class PageDialogs : public UIDelegate {
 public:
  /// Seconds after which a question that nobody gets to see is answered, so that a page that asks without end
  /// takes no time from the others.
  static constexpr double kRefusalDelay = 0.2;

  PageDialogs(const Platform& platform, OpenWindows& windows, PageQuestions& questions,
              WindowLife& windowLife, PageWindows& pageWindows, DebugLog& log);

  void runBeforeUnloadConfirmPanel(WebView& webView, const std::optional<Url>& page,
                                   std::function<void(bool)> completion) override;
  void runJavaScriptAlertPanel(WebView& webView, const std::string& message,
                               std::function<void()> completion) override;
  void runJavaScriptConfirmPanel(WebView& webView, const std::string& message,
                                 std::function<void(bool)> completion) override;
  void runJavaScriptTextInputPanel(WebView& webView, const std::string& prompt,
                                   const std::string& defaultText,
                                   std::function<void(std::optional<std::string>)> completion) override;
  void createWebView(WebView& webView, const PageWindowRequest& request) override {
    pageWindows_.open(webView, request);
  }
  void runOpenPanel(WebView& webView, const OpenPanel& parameters, OpenPanelCompletion completion) override;

 private:
  /// Asks within the limit for dialogs. What is refused is answered as `cancelled`.
  template <class T>
  void ask(WebView& webView, T cancelled, std::function<void(T)> completion,
           const PageQuestions::Show<T>& show);
  [[nodiscard]] bool mayShow(const WebView& webView, HovrelPanel& panel);
  void confirm(WebView& webView, const Alert& alert, std::function<void(bool)> completion);

  Application& application_;
  MainQueue& mainQueue_;
  const Clock& clock_;
  OpenWindows& windows_;
  PageQuestions& questions_;
  WindowLife& windowLife_;
  PageWindows& pageWindows_;
  DebugLog& log_;
};

}  // namespace velto
