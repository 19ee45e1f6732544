#include "app/windows/StandardFurniture.h"

#include <memory>

#include "controlbar/AnimatedTrafficLightsView.h"
#include "controlbar/WindowChromeOverlay.h"
#include "controlbar/ZoomIndicatorView.h"

namespace velto {

namespace {

constexpr Size kTrafficLights{58, 12};
constexpr double kTrafficLightsX = 12;
/// From the window's top to the lower left corner of the lights.
constexpr double kTrafficLightsDrop = 20;
constexpr Size kZoomIndicator{60, 28};
constexpr double kZoomIndicatorMargin = 12;

}  // namespace

void StandardFurniture::addChrome(HovrelPanel& panel, View& container) {
  auto& overlay = container.addSubview(std::make_unique<WindowChromeOverlay>(container.bounds()));
  overlay.autoresizing = {.width = true, .height = true};

  const Rect frame{{kTrafficLightsX, container.bounds().maxY() - kTrafficLightsDrop}, kTrafficLights};
  auto& lights = container.addSubview(std::make_unique<AnimatedTrafficLightsView>(frame, panel, animator_));
  lights.autoresizing = {.maxXMargin = true, .minYMargin = true};
}

void StandardFurniture::addZoomIndicator(View& container) {
  const double x = container.bounds().maxX() - kZoomIndicator.width - kZoomIndicatorMargin;
  auto& indicator = container.addSubview(std::make_unique<ZoomIndicatorView>(
      Rect{{x, kZoomIndicatorMargin}, kZoomIndicator}, animator_, mainQueue_));
  indicator.autoresizing = {.minXMargin = true, .maxYMargin = true};
}

void StandardFurniture::showZoom(View& container, double zoom) {
  if (auto* indicator = firstSubview<ZoomIndicatorView>(container)) indicator->show(zoom);
}

}  // namespace velto
