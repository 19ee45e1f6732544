#pragma once

#include <algorithm>

namespace velto {

/// A position in points. Unless a header says otherwise the origin is at the bottom left and y grows upwards.
struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

/// An extent in points.
struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

/// A rectangle in points; `origin` is its lower left corner.
struct Rect {
  Point origin;
  Size size;

  [[nodiscard]] double minX() const { return origin.x; }
  [[nodiscard]] double minY() const { return origin.y; }
  [[nodiscard]] double maxX() const { return origin.x + size.width; }
  [[nodiscard]] double maxY() const { return origin.y + size.height; }
  [[nodiscard]] double midX() const { return origin.x + size.width * 0.5; }
  [[nodiscard]] double midY() const { return origin.y + size.height * 0.5; }
  [[nodiscard]] bool isEmpty() const { return !(size.width > 0 && size.height > 0); }

  /// Whether the point lies inside; the lower and left edges belong to the rectangle, the upper and right do
  /// not.
  [[nodiscard]] bool contains(Point p) const {
    return p.x >= minX() && p.x < maxX() && p.y >= minY() && p.y < maxY();
  }

  /// The rectangle made smaller by `dx` on the left and right and `dy` on the top and bottom.
  [[nodiscard]] Rect inset(double dx, double dy) const {
    return {{origin.x + dx, origin.y + dy}, {size.width - 2 * dx, size.height - 2 * dy}};
  }

  /// The part that both share; the empty rectangle at (0, 0) when they share nothing.
  [[nodiscard]] Rect intersection(const Rect& other) const {
    const double left = std::max(minX(), other.minX());
    const double bottom = std::max(minY(), other.minY());
    const double right = std::min(maxX(), other.maxX());
    const double top = std::min(maxY(), other.maxY());
    if (right <= left || top <= bottom) return {};
    return {{left, bottom}, {right - left, top - bottom}};
  }

  bool operator==(const Rect&) const = default;
};

}  // namespace velto
