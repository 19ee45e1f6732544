#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "app/pages/DebugLog.h"
#include "app/pages/PageWindows.h"
#include "app/windows/OpenWindows.h"
#include "app/windows/WindowLife.h"
#include "platform/loop/Clock.h"
#include "platform/ui/Application.h"
#include "platform/web/WebView.h"

namespace velto {

/// UI delegate of every page: asks the person on the page's behalf, in sheets on the page's window.
///
/// Nothing that a page asks keeps its window from closing: what is open then counts as cancelled, and what
/// the page asks until the window has closed is cancelled unseen. The one question that the person must see
/// is whether to leave the page.
class PageDialogs : public UIDelegate {
 public:
  PageDialogs(Application& application, OpenWindows& windows, WindowLife& windowLife,
              PageWindows& pageWindows, DebugLog& log, const Clock& clock);

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
  /// A question on the screen. The sheet owns what its answer goes to.
  struct Open {
    WeakPtr<WebView> page;
    std::weak_ptr<void> answer;
    std::function<void()> cancel;
  };

  /// Hands `show` where the answer is to go; without being shown, or shown for too long, the question is
  /// answered as `cancelled`.
  template <class T>
  void ask(WebView& webView, T cancelled, std::function<void(T)> completion,
           const std::function<void(std::function<void(T)>)>& show);
  [[nodiscard]] bool mayShow(WebView& webView);
  void cancelOpen(const WebView& webView);

  Application& application_;
  OpenWindows& windows_;
  WindowLife& windowLife_;
  PageWindows& pageWindows_;
  DebugLog& log_;
  const Clock& clock_;
  std::vector<Open> open_;
};

}  // namespace velto
