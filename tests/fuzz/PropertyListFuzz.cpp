// What can be read can be written, and what was written reads back as it is. The first writing may change it:
// XML cannot hold every character.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/foundation/PropertyList.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto value = velto::readPropertyList({reinterpret_cast<const char*>(data), size});
  if (!value) return 0;
  const std::string written = velto::writePropertyList(*value);
  constexpr std::size_t kMore = std::size_t{16} * 1024 * 1024;
  if (written.size() > kMore) return 0;
  const auto again = velto::readPropertyList(written);
  if (!again) std::abort();
  const std::string rewritten = velto::writePropertyList(*again);
  const auto last = velto::readPropertyList(rewritten);
  if (!last || velto::writePropertyList(*last) != rewritten) std::abort();
  return 0;
}
