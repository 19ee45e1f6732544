#include "app/pages/PageNavigation.h"

#include <string>
#include <utility>

#include "app/pages/FailurePage.h"
#include "app/pages/LoggedPage.h"
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

PageNavigation::PageNavigation(const Platform& platform, OpenWindows& windows, PageQuestions& questions,
                               WindowLife& windowLife, PageContent& content, VisitRecording& visits,
                               SessionRecording& session, DebugLog& log)
    : environment_(platform.environment),
      windows_(windows),
      questions_(questions),
      windowLife_(windowLife),
      content_(content),
      visits_(visits),
      session_(session),
      log_(log),
      failurePresenter_(platform.files, platform.clock, platform.environment),
      scrollRestoration_(windows, platform.mainQueue) {}

void PageNavigation::didStartProvisionalNavigation(WebView& webView, Navigation navigation) {
  log_.log("didStartProvisionalNavigation: " + loggedPage(webView));
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
  playInstead(*panel, webView, navigation);
}

void PageNavigation::playInstead(HovrelPanel& panel, WebView& webView, Navigation navigation) {
  // What was asked for before the player only begins in order to be called off.
  const bool isPlayer = panel.playerNavigation && navigation.number <= panel.playerNavigation->number;
  if (isPlayer || panel.failurePageNavigation == navigation) return;
  const auto url = webView.url();
  const auto player = url ? content_.playerAt(*url) : std::nullopt;
  if (player) panel.playerNavigation = content_.loadPlayer(webView, *player);
}

void PageNavigation::didCommitNavigation(WebView& webView, Navigation) {
  questions_.cancel(webView);
  if (HovrelPanel* panel = windows_.find(webView)) panel->dialogLimit.pageChanged();
}

void PageNavigation::didFinishNavigation(WebView& webView, Navigation navigation) {
  log_.log("didFinish: " + loggedPage(webView));
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
  session_.pageChanged();
  scrollRestoration_.pageLoaded(webView);
  if (panel.controlBarView) panel.controlBarView->setPageAddress(url);
}

void PageNavigation::didFailProvisionalNavigation(WebView& webView, Navigation navigation,
                                                  const WebError& error) {
  logError("didFailProvisionalNavigation", webView, error);
  failed(webView, navigation, error);
}

void PageNavigation::didFailNavigation(WebView& webView, Navigation navigation, const WebError& error) {
  logError("didFail", webView, error);
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
  log_.log("loopback fallback: trying " + loggedAddress(webView, next->candidate));
  next->attempt.navigation = webView.load({next->candidate});
  panel.loopbackAttempt = std::move(next->attempt);
  return true;
}

void PageNavigation::webContentProcessDidTerminate(WebView& webView) {
  questions_.cancel(webView);
  if (windowLife_.pageStoppedAnswering(webView)) return;
  if (HovrelPanel* panel = windows_.find(webView)) failurePresenter_.showCrash(*panel, webView);
}

void PageNavigation::webContentResponsivenessChanged(WebView& webView, bool responsive) {
  if (!responsive) windowLife_.pageStoppedAnswering(webView);
}

void PageNavigation::logError(std::string_view event, const WebView& webView, const WebError& error) {
  WebError told = error;
  // The description may name what the printed form does.
  if (isInPrivateWindow(webView)) told = {error.domain, error.code, kPrivatePage, std::nullopt};
  log_.log(std::string(event) + ": " + told.localizedDescription + " | " + printedForm(told));
}

}  // namespace velto
