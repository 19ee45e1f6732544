#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "app/launch/Zoom.h"

/// A zoom that was understood is one that a page may have.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto zoom = velto::parseZoomValue(text);
  if (!zoom) return 0;
  if (!(*zoom >= velto::kMinimumZoom && *zoom <= velto::kMaximumZoom)) std::abort();
  if (velto::clampZoom(*zoom) != *zoom) std::abort();
  return 0;
}
