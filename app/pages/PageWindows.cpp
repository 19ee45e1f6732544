#include "app/pages/PageWindows.h"

#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

#include "app/pages/LoggedPage.h"

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

bool mayPageOpen(const Url& target) {
  const std::string scheme = target.lowercasedScheme();
  if (scheme == "http" || scheme == "https") return true;
  return target.withoutFragment().absoluteString() == "about:blank";
}

PageWindows::PageWindows(OpenWindows& windows, const WindowLife& windowLife, DebugLog& log,
                         const Clock& clock, MainQueue& mainQueue)
    : windows_(windows), windowLife_(windowLife), log_(log), clock_(clock), mainQueue_(mainQueue) {}

void PageWindows::open(const WebView& webView, const PageWindowRequest& request) {
  if (!request.url) return;
  if (!mayPageOpen(*request.url)) return refused(webView);
  WindowOptions options;
  options.width = wholePoints(request.width);
  options.height = wholePoints(request.height);
  ask(webView, *request.url, options, request.isUserGesture);
}

void PageWindows::openByMessage(const WebView& webView, const Url& url) {
  const auto gesture = webView.lastUserGesture();
  ask(webView, url, {}, gesture && clock_.uptime().seconds - gesture->seconds < kGestureLasts);
}

void PageWindows::ask(const WebView& webView, const Url& url, WindowOptions options, bool isUserGesture) {
  const auto verdict = admit(webView, isUserGesture);
  if (verdict == PopupLimit::Verdict::refused) return refused(webView);
  options.incognito = isInPrivateWindow(webView);
  options.dataStore = webView.configuration().dataStore;
  mainQueue_.async([self = WeakPtr<PageWindows>(*this), url, options = std::move(options), verdict] {
    if (self) self->openNow(url, options, verdict);
  });
}

PopupLimit::Verdict PageWindows::admit(const WebView& webView, bool isUserGesture) {
  HovrelPanel* panel = windows_.find(webView);
  if (panel == nullptr || windowLife_.isClosing(webView)) return PopupLimit::Verdict::refused;
  const auto verdict = panel->popupLimit.admit(isUserGesture, webView.lastUserGesture());
  const bool isRefused = verdict == PopupLimit::Verdict::refused || !limit_.admit(clock_.uptime());
  return isRefused ? PopupLimit::Verdict::refused : verdict;
}

void PageWindows::openNow(const Url& url, const WindowOptions& options, PopupLimit::Verdict verdict) {
  if (!opener_) return;
  const std::size_t before = windows_.panels().size();
  opener_->openWindow(url, options);
  if (verdict == PopupLimit::Verdict::unasked && windows_.panels().size() > before) {
    windows_.panels().back()->popupLimit = PopupLimit::ofUnaskedWindow();
  }
}

void PageWindows::refused(const WebView& webView) {
  ++refused_;
  lastRefused_ = loggedPage(webView);
  if (!nextReport_.isPending()) reportRefused();
}

void PageWindows::reportRefused() {
  if (refused_ == 0) return;
  log_.log("refused " + std::to_string(refused_) + " windows, the last one from " + lastRefused_);
  refused_ = 0;
  nextReport_ = mainQueue_.after(kReportInterval, [self = WeakPtr<PageWindows>(*this)] {
    if (self) self->reportRefused();
  });
}

}  // namespace velto
