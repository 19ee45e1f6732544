#pragma once

#include <optional>
#include <string>

#include "platform/foundation/Date.h"
#include "platform/foundation/HttpCookie.h"

namespace velto {

/// In the order of the two flag bits that stand for it.
enum class SafariCookieSameSite { none, lax, unspecified, strict };

/// One cookie as it stands in Safari's file.
struct SafariCookie {
  /// As stored, with its leading dot.
  std::string domain = {};
  /// Never empty.
  std::string name = {};
  /// Never empty.
  std::string path = {};
  std::string value = {};
  /// Whatever the file says, also a moment long past.
  WallTime expires = {};
  bool isSecure = false;
  bool isHTTPOnly = false;
  SafariCookieSameSite sameSite = SafariCookieSameSite::none;
  std::optional<WallTime> created = {};

  /// What `makeHttpCookie` takes.
  [[nodiscard]] CookieProperties httpProperties() const;

  bool operator==(const SafariCookie&) const = default;
};

}  // namespace velto
