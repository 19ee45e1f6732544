#include "controlbar/AnimatedTrafficLightsView.h"

#include <memory>
#include <utility>

namespace velto {

namespace {

constexpr double kTrackingMargin = 4;
constexpr double kDuration = 0.2;

}  // namespace

AnimatedTrafficLightsView::AnimatedTrafficLightsView(const Rect& frame, WeakPtr<Window> targetWindow,
                                                     const Animator& animator)
    : View(frame), animator_(animator) {
  const auto add = [&](TrafficLightType type) {
    return &addSubview(std::make_unique<TrafficLightDot>(type, targetWindow));
  };
  dots_ = {add(TrafficLightType::close), add(TrafficLightType::minimize), add(TrafficLightType::zoom)};
  setIdentifier("hovrel-traffic-lights");
  setTrackingMargin(kTrackingMargin);
}

void AnimatedTrafficLightsView::expand(bool expanded) {
  if (std::exchange(isExpanded_, expanded) == expanded) return;
  const double expansion = expanded ? 1 : 0;
  const double width = TrafficLightDot::frameAt(TrafficLightType::zoom, expansion).maxX();
  // The width goes on from where it is as well: the row is made wider than either form.
  const auto step = [=, this, fromExpansion = expansion_, fromWidth = frame().size.width](double progress) {
    expansion_ = interpolate(fromExpansion, expansion, progress);
    setFrame({frame().origin, {interpolate(fromWidth, width, progress), frame().size.height}});
    for (TrafficLightDot* dot : dots_) dot->setExpansion(expansion_);
  };
  animation_ = animator_.animate(kDuration, Animator::Curve::easeInOut, step);
}

}  // namespace velto
