#include "app/windows/VeltoLaunchAnimationView.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "platform/ui/Application.h"
#include "platform/ui/Drawing.h"

namespace velto {

namespace {

constexpr double kFrameInterval = 1.0 / 60;

/// The part of the phase from `start` to `end`, eased at both ends.
double easedRange(double phase, double start, double end) {
  const double t = std::clamp((phase - start) / (end - start), 0.0, 1.0);
  return t * t * (3 - 2 * t);
}

}  // namespace

VeltoLaunchAnimationView::VeltoLaunchAnimationView(const Clock& clock, MainQueue& mainQueue)
    : View({{0, 0}, {kSide, kSide}}), clock_(clock), mainQueue_(mainQueue) {
  setIdentifier("velto-launch-animation");
  setAccessibilityLabel("Velto launch animation");
}

void VeltoLaunchAnimationView::didMoveToWindow(Window* window) {
  if (window == nullptr) {
    animationTimer_.stop();
    return;
  }
  if (std::exchange(hasAnimated_, true)) return;
  if (window->application().windowSystem().prefersReducedMotion()) {
    setPhase(1);
    return;
  }
  animationStart_ = clock_.uptime();
  animationTimer_ = mainQueue_.every(kFrameInterval, [this] { step(); });
}

void VeltoLaunchAnimationView::step() {
  const double elapsed = clock_.uptime().seconds - animationStart_->seconds;
  setPhase(std::min(elapsed / kDuration, 1.0));
  if (elapsed >= kDuration) animationTimer_.stop();
}

void VeltoLaunchAnimationView::setPhase(double phase) {
  phase_ = phase;
  setNeedsDisplay();
}

/// A window that rises and settles, then its two eyes open and it smiles.
void VeltoLaunchAnimationView::draw(const Cairo::RefPtr<Cairo::Context>& context) {
  const double k = std::min(bounds().size.width, bounds().size.height) / kSide;
  context->scale(k, k);

  const double rise = easedRange(phase_, 0, 0.45);
  const double width = 64 * (0.6 + 0.4 * rise);
  const double height = 52 * (0.6 + 0.4 * rise);
  const Rect body{{46 - width / 2, 46 - height / 2 - 10 * (1 - rise)}, {width, height}};
  roundedRectangle(context, body, 14 * rise + 4);
  context->set_source_rgba(0.16, 0.13, 0.11, rise);
  context->fill();

  const double eyes = easedRange(phase_, 0.35, 0.65);
  context->set_source_rgba(1, 1, 1, eyes);
  for (const double x : {36.0, 56.0}) {
    context->begin_new_sub_path();
    context->arc(x, 51, 4 * eyes, 0, 2 * std::numbers::pi);
    context->fill();
  }

  const double smile = easedRange(phase_, 0.6, 1);
  if (smile <= 0) return;
  constexpr double kMiddle = 1.5 * std::numbers::pi;
  const double sweep = 0.9 * smile;
  context->set_line_width(3.6);
  context->set_line_cap(Cairo::LINE_CAP_ROUND);
  context->set_source_rgba(1, 1, 1, smile);
  context->begin_new_sub_path();
  context->arc(46, 50, 14, kMiddle - sweep, kMiddle + sweep);
  context->stroke();
}

}  // namespace velto
