#pragma once

#include "platform/foundation/Geometry.h"

namespace velto {

/// A rectangle as the X server knows it: whole units, the origin at the top left of the X screen, y
/// downwards.
struct XRect {
  int x = 0;
  int y = 0;
  int width = 1;
  int height = 1;
  bool operator==(const XRect&) const = default;
};

/// Converts between the X server's coordinates and global screen coordinates, whose origin is the lower left
/// corner of the primary monitor and whose y grows upwards.
class ScreenGeometry {
 public:
  explicit ScreenGeometry(const XRect& primary) : primary_(primary) {}

  [[nodiscard]] Rect fromX(const XRect& rect) const;
  [[nodiscard]] Point fromX(Point point) const;
  /// Rounds to whole units; the size is rounded by itself, so it does not depend on the position. Positions
  /// and sizes are held to what the X protocol can carry.
  [[nodiscard]] XRect toX(const Rect& rect) const;

 private:
  [[nodiscard]] double bottom() const { return static_cast<double>(primary_.y) + primary_.height; }
  XRect primary_;
};

}  // namespace velto
