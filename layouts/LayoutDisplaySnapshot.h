#pragma once

#include <string>

#include "platform/foundation/Geometry.h"

namespace velto {

/// A display as it is now. Rectangles are in global screen coordinates, y upwards.
struct LayoutDisplaySnapshot {
  std::string key;
  std::string name;
  Rect frame;
  Rect visibleFrame;
  double backingScaleFactor = 1;
  bool isMain = false;
  bool operator==(const LayoutDisplaySnapshot&) const = default;
};

}  // namespace velto
