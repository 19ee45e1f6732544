#include "app/pages/LoggedPage.h"

#include "app/windows/HovrelPanel.h"

namespace velto {

bool isInPrivateWindow(const WebView& webView) {
  // Not by the list of windows: the page of one that has closed still has something to report.
  const auto* panel = dynamic_cast<const HovrelPanel*>(webView.window());
  return panel != nullptr && panel->isPrivate;
}

std::string loggedAddress(const WebView& webView, const std::optional<Url>& address) {
  if (isInPrivateWindow(webView)) return kPrivatePage;
  return address ? address->absoluteString() : "unknown";
}

std::string loggedPage(const WebView& webView) { return loggedAddress(webView, webView.url()); }

}  // namespace velto
