#include "app/pages/PageNavigation.h"

#include <string>
#include <utility>

#include "app/pages/FailurePage.h"
#include "app/pages/LoopbackCandidates.h"

namespace velto {

namespace {

bool isWebPage(const Url& url) { return url.scheme() == "https" || url.scheme() == "http"; }

/// A page that began later is, or will be, in the window. Loads that the application asks for are numbered
/// when it asks, so one may begin after one of a higher number.
bool isOvertaken(const HovrelPanel& panel, Navigation navigation) {
  return panel.currentNavigation && navigation.number < panel.currentNavigation->number;
}

std::optional<Url> failingUrl(const HovrelPanel& panel, const WebView& webView, const WebError& error) {
  if (panel.loopbackAttempt) return panel.loopbackAttempt->original;
  return error.failingUrl ? error.failingUrl : webView.url();
}

}  // namespace

std::string printedForm(const WebError& error) {
  const std::string info =
      error.failingUrl ? " UserInfo={NSErrorFailingURLKey=" + error.failingUrl->absoluteString() + "}" : "";
  return "Error Domain=" + error.domain + " Code=" + std::to_string(error.code) + " \"" +
         error.localizedDescription + "\"" + info;
}

PageNavigation::PageNavigation(const Platform& platform, OpenWindows& windows, WindowLife& windowLife,
                               VisitRecording& visits, DebugLog& log)
    : environment_(platform.environment),
      windows_(windows),
      windowLife_(windowLife),
      visits_(visits),
      log_(log),
      failurePresenter_(platform.files, platform.clock, platform.environment),
      scrollRestoration_(windows, platform.mainQueue) {}

void PageNavigation::didStartProvisionalNavigation(WebView& webView, Navigation navigation) {
  logPage("didStartProvisionalNavigation", webView);
  HovrelPanel* panel = windows_.find(webView);
  if (panel == nullptr) return;
  panel->currentNavigation = navigation;
  if (panel->failurePageNavigation != navigation) {
    panel->failurePageNavigation.reset();
    panel->lastKnownScroll.reset();
  }
  // The person or the page went somewhere else, and the search is over.
  if (panel->loopbackAttempt && panel->loopbackAttempt->navigation != navigation) {
    panel->loopbackAttempt.reset();
  }
  if (panel->controlBarView) panel->controlBarView->loadStarted();
}

void PageNavigation::didCommitNavigation(WebView& webView, Navigation) {
  if (HovrelPanel* panel = windows_.find(webView)) panel->dialogLimit.pageChanged();
}

void PageNavigation::didFinishNavigation(WebView& webView, Navigation navigation) {
  logPage("didFinish", webView);
  if (windowLife_.finishPendingClose(webView, navigation)) return;
  HovrelPanel* panel = windows_.find(webView);
  if (panel == nullptr || panel->failurePageNavigation == navigation) return;
  const auto url = webView.url();
  if (url && isWebPage(*url)) pageArrived(*panel, webView, *url);
}

void PageNavigation::pageArrived(HovrelPanel& panel, WebView& webView, const Url& url) {
  panel.loopbackAttempt.reset();
  const std::string title = webView.title();
  if (!panel.isPrivate) visits_.recordVisit(url, title);
  if (!environment_.isTestMode()) {
    // A window without any title could not be told from others where the desktop lists them.
    panel.setTitle(title.empty() ? url.host().value_or(url.absoluteString()) : title);
  }
  scrollRestoration_.pageLoaded(webView);
  if (panel.controlBarView) panel.controlBarView->setPageAddress(url);
}

void PageNavigation::didFailProvisionalNavigation(WebView& webView, Navigation navigation,
                                                  const WebError& error) {
  logError("didFailProvisionalNavigation", error);
  failed(webView, navigation, error);
}

void PageNavigation::didFailNavigation(WebView& webView, Navigation navigation, const WebError& error) {
  logError("didFail", error);
  failed(webView, navigation, error);
}

void PageNavigation::failed(WebView& webView, Navigation navigation, const WebError& error) {
  if (windowLife_.abandonPendingClose(webView, navigation) || !isFailureWorthShowing(error)) return;
  HovrelPanel* panel = windows_.find(webView);
  // Another load would take the place of the one that the closing waits for.
  if (panel == nullptr || windowLife_.isClosing(webView) || isOvertaken(*panel, navigation)) return;
  if (panel->failurePageNavigation == navigation) return;
  const auto url = failingUrl(*panel, webView, error);
  if (isConnectionFailure(error) && tryNextLoopback(*panel, webView, url)) return;
  panel->loopbackAttempt.reset();
  failurePresenter_.showFailure(*panel, webView, url, error);
}

bool PageNavigation::tryNextLoopback(HovrelPanel& panel, WebView& webView, const std::optional<Url>& url) {
  auto next = url ? nextLoopbackCandidate(panel.loopbackAttempt, *url) : std::nullopt;
  if (!next) return false;
  log_.log("loopback fallback: trying " + next->candidate.absoluteString());
  next->attempt.navigation = webView.load({next->candidate});
  panel.loopbackAttempt = std::move(next->attempt);
  return true;
}

void PageNavigation::webContentProcessDidTerminate(WebView& webView) {
  if (windowLife_.pageStoppedAnswering(webView)) return;
  if (HovrelPanel* panel = windows_.find(webView)) failurePresenter_.showCrash(*panel, webView);
}

void PageNavigation::webContentResponsivenessChanged(WebView& webView, bool responsive) {
  if (!responsive) windowLife_.pageStoppedAnswering(webView);
}

void PageNavigation::logPage(std::string_view event, const WebView& webView) {
  const auto url = webView.url();
  log_.log(std::string(event) + ": " + (url ? url->absoluteString() : "unknown"));
}

void PageNavigation::logError(std::string_view event, const WebError& error) {
  log_.log(std::string(event) + ": " + error.localizedDescription + " | " + printedForm(error));
}

}  // namespace velto
