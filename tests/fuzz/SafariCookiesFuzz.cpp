// Whatever the bytes are, reading them ends soon, takes no more memory than some times their size, and gives
// cookies that keep what the reader promises.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "browsing/safari/SafariBinaryCookies.h"
#include "platform/foundation/Text.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<velto::SafariCookie> cookies;
  try {
    cookies = velto::SafariBinaryCookies::parse({reinterpret_cast<const char*>(data), size});
  } catch (const velto::SafariBinaryCookies::ParseError&) {
    return 0;
  }
  std::size_t held = 0;
  for (const velto::SafariCookie& cookie : cookies) {
    held += sizeof cookie;
    require(!cookie.domain.empty() && !cookie.name.empty() && !cookie.path.empty());
    require(!cookie.created || cookie.created->secondsSince1970 > 0);
    for (const auto* text : {&cookie.domain, &cookie.name, &cookie.path, &cookie.value}) {
      require(velto::isValidUtf8(*text) && text->find('\0') == std::string_view::npos);
      held += text->capacity();
    }
  }
  require(held <= 16 * size + (std::size_t{8} << 20U));
  return 0;
}
