#include "controlbar/TrafficLightDot.h"

#include <numbers>

#include "platform/ui/Animator.h"
#include "platform/ui/Color.h"

namespace velto {

namespace {

/// Between neighbours, in both forms.
constexpr double kSpacing = 10;
constexpr double kCompactAlpha = 0.2;

struct Look {
  const char* identifier;
  const char* label;
  Color color;
};

Look lookOf(TrafficLightType type) {
  switch (type) {
    case TrafficLightType::close:
      return {"hovrel-close-dot", "Close", {1.0, 0.37, 0.34}};
    case TrafficLightType::minimize:
      return {"hovrel-minimise-dot", "Minimise", {1.0, 0.74, 0.18}};
    case TrafficLightType::zoom:
      return {"hovrel-zoom-dot", "Zoom", {0.16, 0.8, 0.25}};
  }
  return {};
}

}  // namespace

TrafficLightDot::TrafficLightDot(TrafficLightType type, WeakPtr<Window> targetWindow)
    : View(frameAt(type, 0)), type_(type), targetWindow_(targetWindow) {
  setIdentifier(lookOf(type).identifier);
  setAccessibilityLabel(lookOf(type).label);
}

Rect TrafficLightDot::frameAt(TrafficLightType type, double expansion) {
  const double side = interpolate(kCompactSize, kExpandedSize, expansion);
  return {{static_cast<int>(type) * (side + kSpacing), (kExpandedSize - side) / 2}, {side, side}};
}

void TrafficLightDot::setExpansion(double expansion) {
  expansion_ = expansion;
  setFrame(frameAt(type_, expansion));
  setNeedsDisplay();
}

void TrafficLightDot::draw(const Cairo::RefPtr<Cairo::Context>& context) {
  constexpr double kBorder = 0.5;
  constexpr double kFullCircle = 2 * std::numbers::pi;
  const double radius = bounds().size.width / 2;
  const Color color = lookOf(type_).color;
  context->arc(radius, radius, radius, 0, kFullCircle);
  context->set_source_rgba(color.red, color.green, color.blue, interpolate(kCompactAlpha, 1, expansion_));
  context->fill();
  context->arc(radius, radius, radius - kBorder / 2, 0, kFullCircle);
  context->set_line_width(kBorder);
  context->set_source_rgba(1, 1, 1, 0.15);
  context->stroke();
  drawSymbol(context);
}

void TrafficLightDot::drawSymbol(const Cairo::RefPtr<Cairo::Context>& context) const {
  const double side = bounds().size.width;
  const double middle = side * 0.5;
  const double low = middle - side * 0.35;
  const double high = middle + side * 0.35;
  const auto line = [&context](Point from, Point to) {
    context->move_to(from.x, from.y);
    context->line_to(to.x, to.y);
  };
  if (type_ == TrafficLightType::close) {
    line({low, low}, {high, high});
    line({high, low}, {low, high});
  } else {
    line({low, middle}, {high, middle});
    if (type_ == TrafficLightType::zoom) line({middle, low}, {middle, high});
  }
  context->set_line_width(1);
  context->set_line_cap(Cairo::LINE_CAP_ROUND);
  context->set_source_rgba(0, 0, 0, 0.5 * expansion_);
  context->stroke();
}

bool TrafficLightDot::mouseDown(const MouseEvent& event) {
  if (event.button != 1) return false;
  if (!targetWindow_) return true;
  switch (type_) {
    case TrafficLightType::close:
      targetWindow_->close();
      break;
    case TrafficLightType::minimize:
      targetWindow_->miniaturize();
      break;
    case TrafficLightType::zoom:
      targetWindow_->zoom();
      break;
  }
  return true;
}

}  // namespace velto
