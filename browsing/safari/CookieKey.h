#pragma once

#include <compare>
#include <string>
#include <string_view>

namespace velto {

/// What makes two cookies the same one, in whatever store they lie. Made by `cookieKey`.
struct CookieKey {
  std::string domain;
  std::string path;
  std::string name;

  auto operator<=>(const CookieKey&) const = default;
};

/// The domain in lower case and without one leading dot; path and name as they are.
CookieKey cookieKey(std::string_view domain, std::string_view path, std::string_view name);

}  // namespace velto
