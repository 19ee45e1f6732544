// A layout that can be read is safe to write, and what was written reads back as the same layout.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "layouts/LayoutFormat.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

void check(velto::JsonParser& parser, const velto::Layout& layout) {
  require(velto::isSafeIdentifier(layout.id));
  require(layout.schemaVersion == velto::Layout::kSchemaVersion);
  for (const velto::LayoutWindow& window : layout.windows) {
    require((layout.displayOf(window) == nullptr) == layout.displays.empty());
    if (!window.thumbnail) continue;
    require(window.thumbnail->starts_with("thumbs/") && window.thumbnail->ends_with(".png"));
    require(window.thumbnail->find("..") == std::string::npos && window.thumbnail->rfind('/') == 6);
  }
  const std::string written = velto::encodeJson(layout);
  const velto::Layout again = velto::decodeLayout(parser, written);
  require(again == layout);
  require(velto::encodeJson(again).size() <= written.size());  // only the sign of a zero may go
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  velto::JsonParser parser;
  velto::Layout layout;
  try {
    layout = velto::decodeLayout(parser, {reinterpret_cast<const char*>(data), size});
  } catch (const velto::UnreadableLayout&) {
    return 0;
  }
  check(parser, layout);
  return 0;
}
