#include "app/pages/PageWindows.h"

#include <cmath>
#include <cstdint>
#include <string>

namespace velto {

namespace {

constexpr double kReportInterval = 1;

/// Absent when it is no length.
std::optional<std::int64_t> wholePoints(const std::optional<double>& length) {
  constexpr double kLongest = 1e6;
  if (!length || !std::isfinite(*length)) return std::nullopt;
  return static_cast<std::int64_t>(std::fmin(std::fmax(*length, 0), kLongest));
}

}  // namespace

bool mayPageOpen(const Url& target, const std::optional<Url>& page) {
  const std::string scheme = target.lowercasedScheme();
  if (scheme == "http" || scheme == "https") return true;
  if (scheme == "file") return page && page->lowercasedScheme() == "file";
  return target.withoutFragment().absoluteString() == "about:blank";
}

PageWindows::PageWindows(OpenWindows& windows, const WindowLife& windowLife, DebugLog& log,
                         const Clock& clock, MainQueue& mainQueue)
    : windows_(windows), windowLife_(windowLife), log_(log), clock_(clock), mainQueue_(mainQueue) {}

void PageWindows::open(const WebView& webView, const PageWindowRequest& request) {
  if (!request.url) return;
  if (!mayPageOpen(*request.url, webView.url()) || !admits(webView, request.isUserGesture)) {
    return refused(webView);
  }
  WindowOptions options;
  options.width = wholePoints(request.width);
  options.height = wholePoints(request.height);
  options.incognito = windows_.find(webView)->isPrivate;
  options.dataStore = webView.configuration().dataStore;
  openLater(*request.url, options, request.isUserGesture);
}

void PageWindows::openOrdinary(const WebView& webView, const Url& url, bool isUserGesture) {
  if (!admits(webView, isUserGesture)) return refused(webView);
  openLater(url, {}, isUserGesture);
}

bool PageWindows::admits(const WebView& webView, bool isUserGesture) {
  HovrelPanel* panel = windows_.find(webView);
  return panel != nullptr && !windowLife_.isClosing(webView) && panel->popupLimit.admit(isUserGesture) &&
         limit_.admit(clock_.uptime());
}

void PageWindows::openLater(const Url& url, const WindowOptions& options, bool isUserGesture) {
  mainQueue_.async([self = WeakPtr<PageWindows>(*this), url, options, isUserGesture] {
    if (self) self->openNow(url, options, isUserGesture);
  });
}

void PageWindows::openNow(const Url& url, const WindowOptions& options, bool isUserGesture) {
  if (!opener_) return;
  const std::size_t before = windows_.panels().size();
  opener_->openWindow(url, options);
  if (!isUserGesture && windows_.panels().size() > before) {
    windows_.panels().back()->popupLimit = PopupLimit::ofUnaskedWindow();
  }
}

void PageWindows::refused(const WebView& webView) {
  ++refused_;
  lastRefused_ = webView.url();
  if (!nextReport_.isPending()) reportRefused();
}

void PageWindows::reportRefused() {
  if (refused_ == 0) return;
  log_.log("refused " + std::to_string(refused_) + " windows, the last one from " +
           (lastRefused_ ? lastRefused_->absoluteString() : "unknown"));
  refused_ = 0;
  nextReport_ = mainQueue_.after(kReportInterval, [self = WeakPtr<PageWindows>(*this)] {
    if (self) self->reportRefused();
  });
}

}  // namespace velto
