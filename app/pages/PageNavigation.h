#pragma once

#include <optional>
#include <string_view>

#include "app/pages/DebugLog.h"
#include "app/pages/FailurePresenter.h"
#include "app/pages/ScrollRestoration.h"
#include "app/windows/OpenWindows.h"
#include "app/windows/WindowLife.h"
#include "browsing/VisitRecording.h"
#include "platform/Platform.h"

namespace velto {

/// Navigation delegate of every page. A load that ends well is a visit; one that fails ends in a page that
/// says so, after the other loopback addresses of this machine were tried for "localhost".
class PageNavigation : public NavigationDelegate {
 public:
  PageNavigation(const Platform& platform, OpenWindows& windows, WindowLife& windowLife,
                 VisitRecording& visits, DebugLog& log);

  void didStartProvisionalNavigation(WebView& webView, Navigation navigation) override;
  void didCommitNavigation(WebView& webView, Navigation navigation) override;
  void didFinishNavigation(WebView& webView, Navigation navigation) override;
  void didFailProvisionalNavigation(WebView& webView, Navigation navigation, const WebError& error) override;
  void didFailNavigation(WebView& webView, Navigation navigation, const WebError& error) override;
  void webContentProcessDidTerminate(WebView& webView) override;
  void webContentResponsivenessChanged(WebView& webView, bool responsive) override;

 private:
  void pageArrived(HovrelPanel& panel, WebView& webView, const Url& url);
  void failed(WebView& webView, Navigation navigation, const WebError& error);
  /// True when another address of this machine is being tried.
  bool tryNextLoopback(HovrelPanel& panel, WebView& webView, const std::optional<Url>& url);
  void logPage(std::string_view event, const WebView& webView);
  void logError(std::string_view event, const WebError& error);

  const Environment& environment_;
  OpenWindows& windows_;
  WindowLife& windowLife_;
  VisitRecording& visits_;
  DebugLog& log_;
  FailurePresenter failurePresenter_;
  ScrollRestoration scrollRestoration_;
};

/// How an error is written down for developers.
std::string printedForm(const WebError& error);

}  // namespace velto
