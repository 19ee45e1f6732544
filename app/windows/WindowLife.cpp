#include "app/windows/WindowLife.h"

#include <utility>

namespace velto {

namespace {

constexpr int kMostRefusedDialogs = 10;

WebView* webViewOf(const Window& window) {
  return window.contentView() != nullptr ? firstSubview<WebView>(*window.contentView()) : nullptr;
}

}  // namespace

WindowLife::WindowLife(OpenWindows& windows, PageQuestions& questions, SessionRecording& session,
                       MainQueue& mainQueue)
    : windows_(windows), questions_(questions), session_(session), mainQueue_(mainQueue) {}

void WindowLife::closeWindow(const Application& application) {
  if (Window* window = application.keyWindow()) window->close();
}

bool WindowLife::windowShouldClose(Window& window) {
  if (confirmedCloseWindows_.contains(&window)) return true;
  WebView* webView = webViewOf(window);
  const auto blank = Url::parse("about:blank");
  if (webView == nullptr || !blank || !webView->isResponsive()) return true;
  // It waits for the person already, whom a second question would only puzzle.
  const bool isFirst = !isClosing(*webView);
  if (!isFirst && questions_.isAsking(*webView)) return false;
  const auto navigation = webView->load({*blank});
  if (!navigation) return true;
  pendingCloseNav_[webView] = {window, *navigation};
  // Nothing that the page has open stands in the way. Later on there is only the question whether to leave
  // it.
  if (isFirst) questions_.cancel(*webView);
  return false;
}

bool WindowLife::finishPendingClose(WebView& webView, Navigation navigation) {
  const auto pending = pendingCloseNav_.find(&webView);
  if (pending == pendingCloseNav_.end() || pending->second.navigation != navigation) return false;
  const WeakPtr<Window> window = pending->second.window;
  pendingCloseNav_.erase(pending);
  confirmClose(window);
  return true;
}

bool WindowLife::abandonPendingClose(WebView& webView, Navigation navigation) {
  const auto pending = pendingCloseNav_.find(&webView);
  if (pending == pendingCloseNav_.end() || pending->second.navigation != navigation) return false;
  pendingCloseNav_.erase(pending);
  return true;
}

bool WindowLife::pageStoppedAnswering(WebView& webView) {
  const auto pending = pendingCloseNav_.find(&webView);
  return pending != pendingCloseNav_.end() && finishPendingClose(webView, pending->second.navigation);
}

bool WindowLife::refusesDialog(WebView& webView) {
  const auto pending = pendingCloseNav_.find(&webView);
  if (pending == pendingCloseNav_.end()) return false;
  if (++pending->second.refusedDialogs == kMostRefusedDialogs) {
    // Not at once: the page is in the middle of its question.
    mainQueue_.async([self = WeakPtr<WindowLife>(*this), page = WeakPtr<WebView>(webView),
                      navigation = pending->second.navigation] {
      if (self && page) self->finishPendingClose(*page, navigation);
    });
  }
  return true;
}

void WindowLife::confirmClose(const WeakPtr<Window>& window) {
  if (!window) return;
  confirmedCloseWindows_.insert(window.get());
  window->close();
}

void WindowLife::windowWillClose(Window& window) {
  confirmedCloseWindows_.erase(&window);
  auto panel = windows_.take(window);
  if (WebView* webView = webViewOf(window)) {
    pendingCloseNav_.erase(webView);
    webView->stopLoading();
    if (const auto blank = Url::parse("about:blank")) webView->load({*blank});
    for (const char* name : {"velto", "windowDrag", "windowResize", "veltoScroll"}) {
      webView->configuration().userContentController->removeMessageHandler(name);
    }
  }
  session_.scheduleSessionRecording();
  // The window is still in the middle of closing, so it is freed when that is over.
  mainQueue_.async([freed = std::move(panel)] {});
}

}  // namespace velto
