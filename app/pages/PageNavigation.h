#pragma once

#include <optional>
#include <string_view>

#include "app/pages/DebugLog.h"
#include "app/pages/FailurePresenter.h"
#include "app/pages/PageContent.h"
#include "app/pages/ScrollRestoration.h"
#include "app/windows/OpenWindows.h"
#include "app/windows/PageQuestions.h"
#include "app/windows/SessionRecording.h"
#include "app/windows/WindowLife.h"
#include "browsing/VisitRecording.h"
#include "platform/Platform.h"

namespace velto {

/// Navigation delegate of every page. A load that ends well is a visit; one that fails ends in a page that
/// says so, after the other loopback addresses of this machine were tried for "localhost".
class PageNavigation : public NavigationDelegate {
 public:
  PageNavigation(const Platform& platform, OpenWindows& windows, PageQuestions& questions,
                 WindowLife& windowLife, PageContent& content, VisitRecording& visits,
                 SessionRecording& session, DebugLog& log);

  void didStartProvisionalNavigation(WebView& webView, Navigation navigation) override;
  void didCommitNavigation(WebView& webView, Navigation navigation) override;
  void didFinishNavigation(WebView& webView, Navigation navigation) override;
  void didFailProvisionalNavigation(WebView& webView, Navigation navigation, const WebError& error) override;
  void didFailNavigation(WebView& webView, Navigation navigation, const WebError& error) override;
  void webContentProcessDidTerminate(WebView& webView) override;
  void webContentResponsivenessChanged(WebView& webView, bool responsive) override;

 private:
  /// The address that the player runs under is nowhere to be fetched from: whatever leads there, a reload or
  /// a link, leads to the player itself.
  void playInstead(HovrelPanel& panel, WebView& webView, Navigation navigation);
  void pageArrived(HovrelPanel& panel, WebView& webView, const Url& url);
  void failed(WebView& webView, Navigation navigation, const WebError& error);
  /// True when another address of this machine is being tried.
  bool tryNextLoopback(HovrelPanel& panel, WebView& webView, const std::optional<Url>& url);
  void logError(std::string_view event, const WebView& webView, const WebError& error);

  const Environment& environment_;
  OpenWindows& windows_;
  PageQuestions& questions_;
  WindowLife& windowLife_;
  PageContent& content_;
  VisitRecording& visits_;
  SessionRecording& session_;
  DebugLog& log_;
  FailurePresenter failurePresenter_;
  ScrollRestoration scrollRestoration_;
};

/// How an error is written down for developers.
std::string printedForm(const WebError& error);

}  // namespace velto
