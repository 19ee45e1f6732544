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
/// The engine shows an empty page for ports that belong to other services instead of failing.
WebError restrictedPortError(std::optional<Url> failingUrl);

}  // namespace velto
