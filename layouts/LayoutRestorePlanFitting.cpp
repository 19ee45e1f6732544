#include "layouts/LayoutRestorePlanFitting.h"

#include <algorithm>
#include <cmath>

namespace velto {
namespace {

bool hasArea(LayoutSize size) { return size.w > 0 && size.h > 0; }

double clampedLength(double length, double minimum, double target) {
  return std::min(std::max(length, minimum), target);
}

double clampedOrigin(double origin, double length, double target) {
  return std::min(std::max(origin, 0.0), std::max(target - length, 0.0));
}

/// One axis of a window, with what it was held to.
struct Axis {
  double origin;
  double length;
  bool atStart;
  bool atEnd;
  bool centered;
};

double fittedOrigin(const Axis& axis, double newLength, double saved, double target) {
  if (axis.atStart) return 0;
  if (axis.atEnd) return target - newLength;
  if (axis.centered) return std::round((target - newLength) * 0.5);
  return std::round((axis.origin + axis.length * 0.5) * target / saved - newLength * 0.5);
}

}  // namespace

LayoutSize visibleSize(const LayoutDisplaySnapshot& display) {
  return {display.visibleFrame.size.width, display.visibleFrame.size.height};
}

LayoutRect clampedRect(LayoutRect rect, LayoutSize target, Size minimum) {
  if (!hasArea(target)) return rect;
  rect.w = clampedLength(rect.w, minimum.width, target.w);
  rect.h = clampedLength(rect.h, minimum.height, target.h);
  rect.x = clampedOrigin(rect.x, rect.w, target.w);
  rect.y = clampedOrigin(rect.y, rect.h, target.h);
  return rect;
}

LayoutRect fittedRect(const LayoutWindow& window, LayoutSize saved, LayoutSize target, Size minimum) {
  LayoutRect rect = window.rect;
  if (!hasArea(target)) return rect;
  if (!hasArea(saved) || saved == target) return clampedRect(rect, target, minimum);

  // The smaller of the two factors, found without a division.
  const bool byWidth = saved.h * target.w <= saved.w * target.h;
  const double numerator = byWidth ? target.w : target.h;
  const double denominator = byWidth ? saved.w : saved.h;
  const LayoutAnchors& held = window.anchors;
  const bool fillsWidth = held.left && held.right;
  const bool fillsHeight = held.top && held.bottom;
  const double w = fillsWidth ? target.w : std::round(numerator * rect.w / denominator);
  const double h = fillsHeight ? target.h : std::round(numerator * rect.h / denominator);

  const Axis x{rect.x, rect.w, held.left, held.right, held.centerX};
  const Axis y{rect.y, rect.h, held.top, held.bottom, held.centerY};
  rect.w = clampedLength(w, minimum.width, target.w);
  rect.h = clampedLength(h, minimum.height, target.h);
  rect.x = fittedOrigin(x, rect.w, saved.w, target.w);
  rect.y = fittedOrigin(y, rect.h, saved.h, target.h);
  return clampedRect(rect, target, minimum);
}

}  // namespace velto
