#pragma once

#include <optional>
#include <string>

#include "platform/foundation/Date.h"
#include "platform/foundation/PropertyList.h"

namespace velto {

/// One cookie as it stands in a cookie store.
struct HttpCookie {
  enum class SameSite { lax, strict };

  std::string name = {};
  std::string value = {};
  /// In lower case; a leading dot means that subdomains get the cookie too.
  std::string domain = {};
  std::string path = "/";
  /// Absent for a cookie that ends with the session.
  std::optional<WallTime> expires = {};
  bool secure = false;
  bool httpOnly = false;
  /// Absent means no restriction.
  std::optional<SameSite> sameSite = {};
  /// When it was first set, as far as that is known.
  std::optional<WallTime> created = {};

  bool operator==(const HttpCookie&) const = default;
};

/// A cookie as named properties. Texts: "Name", "Value", "Path", "Domain" or in its stead "OriginURL",
/// "SameSite" ("lax" or "strict"). A date: "Expires". "Secure" and "HttpOnly" hold whatever their value is.
/// "Created" counts seconds since 2001, as a number or as its text.
using CookieProperties = PropertyList::Dictionary;

/// Absent when the properties make no cookie: value or path is missing, the name is missing or
/// empty, or there is no domain.
std::optional<HttpCookie> makeHttpCookie(const CookieProperties& properties);

}  // namespace velto
