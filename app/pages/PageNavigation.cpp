#include "app/pages/PageNavigation.h"

#include <string>
#include <string_view>
#include <utility>

#include "platform/foundation/Text.h"

namespace velto {

namespace {

/// Seconds within which a second death of a window's process is of one kind with the first.
constexpr double kRepeatedDeath = 5;

void replaceAll(std::string& text, std::string_view mark, std::string_view with) {
  for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + with.size())) {
    text.replace(at, mark.size(), with);
  }
}

}  // namespace

std::string crashPage(std::string_view pageTemplate, const std::optional<Url>& url) {
  std::string page(pageTemplate);
  replaceAll(page, "{{url}}", escapeHtml(url ? url->absoluteString() : "about:blank"));
  return page;
}

PageNavigation::PageNavigation(OpenWindows& windows, WindowLife& windowLife, const FileManager& files,
                               const Clock& clock, std::filesystem::path resources)
    : windows_(windows),
      windowLife_(windowLife),
      files_(files),
      clock_(clock),
      resources_(std::move(resources)) {}

void PageNavigation::didStartProvisionalNavigation(WebView& webView, Navigation navigation) {
  HovrelPanel* panel = windows_.find(webView);
  if (panel != nullptr && panel->failurePageNavigation != navigation) {
    panel->failurePageNavigation.reset();
    panel->lastKnownScroll.reset();
  }
}

void PageNavigation::didFinishNavigation(WebView& webView, Navigation navigation) {
  windowLife_.finishPendingClose(webView, navigation);
}

void PageNavigation::didFailProvisionalNavigation(WebView& webView, Navigation navigation, const WebError&) {
  windowLife_.abandonPendingClose(webView, navigation);
}

void PageNavigation::didFailNavigation(WebView& webView, Navigation navigation, const WebError&) {
  windowLife_.abandonPendingClose(webView, navigation);
}

void PageNavigation::webContentProcessDidTerminate(WebView& webView) {
  if (windowLife_.pageStoppedAnswering(webView)) return;
  HovrelPanel* panel = windows_.find(webView);
  if (panel == nullptr) return;
  const Uptime now = clock_.uptime();
  const auto previous = std::exchange(panel->lastProcessDeath, now);
  if (panel->failurePageNavigation && previous && now.seconds - previous->seconds < kRepeatedDeath) return;
  const auto pageTemplate = files_.readIfPossible(resources_ / "PageCrashed.html");
  const auto url = webView.url();
  panel->failurePageNavigation =
      webView.loadHtml(crashPage(pageTemplate.value_or("<a href=\"{{url}}\">Reload</a>"), url), url);
}

void PageNavigation::webContentResponsivenessChanged(WebView& webView, bool responsive) {
  if (!responsive) windowLife_.pageStoppedAnswering(webView);
}

}  // namespace velto
