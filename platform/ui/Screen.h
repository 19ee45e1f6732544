#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/foundation/Geometry.h"

namespace velto {

/// One connected display, as it is now. Rectangles are in global screen coordinates: points, y upwards, the
/// origin at the lower left corner of the main display.
struct Screen {
  /// Tells displays apart while the set of them stays as it is.
  int number = 0;
  std::string name;
  Rect frame;
  /// The frame without panels and docks.
  Rect visibleFrame;
  double backingScaleFactor = 1;
  /// From the display's EDID; 0 where there is none.
  std::uint32_t vendor = 0;
  std::uint32_t model = 0;
  std::uint32_t serial = 0;
  bool operator==(const Screen&) const = default;
};

}  // namespace velto
