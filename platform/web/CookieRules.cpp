#include "platform/web/CookieRules.h"

#include <algorithm>
#include <string_view>

#include "platform/foundation/Text.h"

namespace velto {
namespace {

bool isCarriedWhole(std::string_view text, std::string_view forbidden) {
  const bool breaks = std::any_of(text.begin(), text.end(), [&](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F || forbidden.find(c) != std::string_view::npos;
  });
  return !breaks && isValidUtf8(text);
}

}  // namespace

bool mayBeStored(const HttpCookie& cookie) {
  return !cookie.name.empty() && !cookie.domain.empty() && isCarriedWhole(cookie.name, ";=") &&
         isCarriedWhole(cookie.value, ";") && isCarriedWhole(cookie.domain, ";, /") &&
         isCarriedWhole(cookie.path, ";");
}

}  // namespace velto
