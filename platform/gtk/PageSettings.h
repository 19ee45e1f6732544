#pragma once

#include <webkit2/webkit2.h>

#include "platform/web/WebView.h"

namespace velto {

/// Gives the engine view what its configuration asks for; it may have run before.
void applySettings(WebKitWebView* view, const WebViewConfiguration& configuration);

/// Lets the navigation go on, under the configuration's rule for media that start by themselves.
void allowNavigation(WebKitPolicyDecision* decision, const WebViewConfiguration& configuration);

}  // namespace velto
