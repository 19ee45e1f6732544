#pragma once

#include <optional>
#include <string>

#include "platform/foundation/Date.h"

namespace velto {

/// One cookie as it stands in a cookie store.
struct HttpCookie {
  enum class SameSite { lax, strict };

  std::string name = {};
  std::string value = {};
  /// As given; a leading dot means that subdomains get the cookie too.
  std::string domain = {};
  std::string path = "/";
  /// Absent for a cookie that ends with the session.
  std::optional<WallTime> expires = {};
  bool secure = false;
  bool httpOnly = false;
  /// Absent means no restriction.
  std::optional<SameSite> sameSite = {};

  bool operator==(const HttpCookie&) const = default;
};

}  // namespace velto
