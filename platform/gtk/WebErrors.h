#pragma once

#include <optional>

#include <glib.h>

#include "platform/web/WebTypes.h"

namespace velto {

/// The engine's error in the domains and codes of the application. `failingUri` may be null.
WebError webErrorFrom(const GError& error, const char* failingUri);

/// The attempt was given up for another one, or the page would not be left.
WebError cancelledError(std::optional<Url> failingUrl);
WebError timedOutError(std::optional<Url> failingUrl);
/// The page's port belongs to another service.
WebError restrictedPortError(std::optional<Url> failingUrl);
/// The server sent the load to where servers may not send one.
WebError refusedRedirectError(std::optional<Url> failingUrl);
/// Whether the engine goes nowhere on this port.
bool isRestrictedPort(const Url& url);

}  // namespace velto
