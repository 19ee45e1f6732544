#include "app/windows/Placement.h"

#include <algorithm>

namespace velto {

namespace {

constexpr double kCascadeStep = 24;

Point heldInside(const Rect& area, Size window, Point origin) {
  const double highestX = std::max(area.minX(), area.maxX() - window.width);
  const double highestY = std::max(area.minY(), area.maxY() - window.height);
  return {std::clamp(origin.x, area.minX(), highestX), std::clamp(origin.y, area.minY(), highestY)};
}

}  // namespace

Point requestedOrigin(const Rect& visibleArea, Size window, std::optional<std::int64_t> x,
                      std::optional<std::int64_t> y) {
  const double right = static_cast<double>(x.value_or(0));
  const double down = static_cast<double>(y.value_or(0));
  return heldInside(visibleArea, window,
                    {visibleArea.minX() + right, visibleArea.maxY() - down - window.height});
}

Point cascadedOrigin(const Rect& reference, const Rect& visibleArea, Size window) {
  const auto held = [](double wanted, double least, double most) {
    return std::min(std::max(wanted, least), most);
  };
  return {held(reference.origin.x + kCascadeStep, visibleArea.minX(), visibleArea.maxX() - window.width),
          held(reference.origin.y - kCascadeStep, visibleArea.minY(), visibleArea.maxY() - window.height)};
}

}  // namespace velto
