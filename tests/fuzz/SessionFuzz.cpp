// A session that can be read names no pictures, and what was written reads back as the same session.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "layouts/VeltoSession.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto session = velto::decodeSession({reinterpret_cast<const char*>(data), size});
  if (!session) return 0;
  require(session->schemaVersion <= velto::Layout::kSchemaVersion);
  for (const velto::LayoutWindow& window : session->windows) require(!window.thumbnail);
  require(velto::decodeSession(velto::encodeJson(*session)) == session);
  return 0;
}
