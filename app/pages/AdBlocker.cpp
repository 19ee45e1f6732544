#include "app/pages/AdBlocker.h"

#include <string>

#include "platform/web/WebView.h"

namespace velto {

namespace {

constexpr const char* kEnabledKey = "adBlockerEnabled";

}  // namespace

bool isAdBlockerEnabled(const UserDefaults& defaults) {
  return defaults.boolean(kEnabledKey).value_or(false);
}

void AdBlocker::toggle() {
  const bool enabled = !isEnabled();
  defaults_.set(kEnabledKey, enabled);
  const std::string script =
      std::string("window.__setAdBlocker && window.__setAdBlocker(") + (enabled ? "true" : "false") + ")";
  for (const Window* window : application_.windows()) {
    const View* content = window->contentView();
    WebView* webView = content != nullptr ? firstSubview<WebView>(*content) : nullptr;
    if (webView != nullptr) webView->evaluateJavaScript(script);
  }
}

}  // namespace velto
