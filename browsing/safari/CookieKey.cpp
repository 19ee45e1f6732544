#include "browsing/safari/CookieKey.h"

#include "platform/foundation/Text.h"

namespace velto {

CookieKey cookieKey(std::string_view domain, std::string_view path, std::string_view name) {
  if (domain.starts_with('.')) domain.remove_prefix(1);
  return {lowercased(domain), std::string(path), std::string(name)};
}

}  // namespace velto
