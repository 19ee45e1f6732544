#include "platform/ui/Drawing.h"

#include <numbers>

namespace velto {

void roundedRectangle(const Cairo::RefPtr<Cairo::Context>& context, const Rect& r, double radius) {
  constexpr double kQuarter = std::numbers::pi / 2;
  context->begin_new_sub_path();
  context->arc(r.maxX() - radius, r.minY() + radius, radius, -kQuarter, 0);
  context->arc(r.maxX() - radius, r.maxY() - radius, radius, 0, kQuarter);
  context->arc(r.minX() + radius, r.maxY() - radius, radius, kQuarter, 2 * kQuarter);
  context->arc(r.minX() + radius, r.minY() + radius, radius, 2 * kQuarter, 3 * kQuarter);
  context->close_path();
}

}  // namespace velto
