#include "app/pages/WindowMotion.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/ui/Window.h"

namespace velto {

namespace {

/// Farther than any desktop reaches, and near enough for whole points to stay exact.
constexpr double kFarthest = 1e6;

double step(double delta) { return std::clamp(delta, -kFarthest, kFarthest); }

/// The origin nearest to `origin` at which a side of this length shows in the stretch from `low` to `high`.
double reachable(double origin, double length, double low, double high) {
  const double shown = std::min({kLeastShown, length, high - low});
  return std::clamp(origin, low + shown - length, high - shown);
}

}  // namespace

Rect draggedFrame(const Rect& frame, double deltaX, double deltaY) {
  return {{frame.origin.x + step(deltaX), frame.origin.y - step(deltaY)}, frame.size};
}

Rect resizedFrame(const Rect& frame, Size size, Size leastSize) {
  const auto held = [](double length, double least) {
    return std::min(std::max({1.0, least, length}), Window::kMaximumSide);
  };
  const Size next{held(size.width, leastSize.width), held(size.height, leastSize.height)};
  return {{frame.origin.x, frame.origin.y - (next.height - frame.size.height)}, next};
}

Rect heldOnScreens(const Rect& frame, const std::vector<Screen>& screens) {
  Rect held = frame;
  double nearest = std::numeric_limits<double>::infinity();
  for (const Screen& screen : screens) {
    const Rect& area = screen.visibleFrame;
    const Point origin{reachable(frame.origin.x, frame.size.width, area.minX(), area.maxX()),
                       reachable(frame.origin.y, frame.size.height, area.minY(), area.maxY())};
    const double distance = std::hypot(origin.x - frame.origin.x, origin.y - frame.origin.y);
    if (distance >= nearest) continue;
    nearest = distance;
    held.origin = origin;
  }
  return held;
}

}  // namespace velto
