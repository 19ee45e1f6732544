#pragma once

#include <optional>
#include <string>

#include "platform/web/WebView.h"

namespace velto {

/// Stands in the debug log for everything that would tell where a private window has been.
inline constexpr const char* kPrivatePage = "(private)";

[[nodiscard]] bool isInPrivateWindow(const WebView& webView);
/// How the debug log names an address of the web view's window.
[[nodiscard]] std::string loggedAddress(const WebView& webView, const std::optional<Url>& address);
/// How the debug log names the page that the web view shows.
[[nodiscard]] std::string loggedPage(const WebView& webView);

}  // namespace velto
