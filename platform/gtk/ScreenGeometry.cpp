#include "platform/gtk/ScreenGeometry.h"

#include <algorithm>
#include <cmath>

namespace velto {

namespace {

constexpr double kFarthest = 30000;

int held(double value, double least) {
  return static_cast<int>(std::lround(std::isfinite(value) ? std::clamp(value, least, kFarthest) : least));
}

}  // namespace

Rect ScreenGeometry::fromX(const XRect& rect) const {
  const Point origin = fromX(Point{static_cast<double>(rect.x), static_cast<double>(rect.y) + rect.height});
  return {origin, {static_cast<double>(rect.width), static_cast<double>(rect.height)}};
}

Point ScreenGeometry::fromX(Point point) const { return {point.x - primary_.x, bottom() - point.y}; }

XRect ScreenGeometry::toX(const Rect& rect) const {
  const int height = held(rect.size.height, 1);
  return {held(rect.minX() + primary_.x, -kFarthest), held(bottom() - rect.minY() - height, -kFarthest),
          held(rect.size.width, 1), height};
}

}  // namespace velto
