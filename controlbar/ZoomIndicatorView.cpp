#include "controlbar/ZoomIndicatorView.h"

#include <cmath>
#include <memory>
#include <string>

#include "platform/ui/Drawing.h"

namespace velto {

namespace {

constexpr double kHeight = 28;
constexpr double kMargin = 12;
constexpr double kRoomBesideText = 32;
constexpr double kCornerRadius = 6;
/// Below this alpha value the badge counts as not there.
constexpr double kTouchableAlpha = 0.1;
constexpr Font kFont{.size = 13, .weight = Font::Weight::medium, .monospacedDigits = true};
constexpr Color kTextColor{1, 1, 1};
/// Dark enough to be read over any page without a blur, which the desktop does not give a part of a window.
constexpr Color kBackground{0.1, 0.1, 0.1, 0.85};

}  // namespace

ZoomIndicatorView::ZoomIndicatorView(const Rect& frame, const Animator& animator, MainQueue& mainQueue)
    : View(frame),
      label_(addSubview(std::make_unique<Label>("100%", kFont, kTextColor))),
      fade_(animator, mainQueue, [this](double alpha) { setVisibility(alpha); }) {
  setIdentifier("hovrel-zoom-indicator");
  label_.setAlignment(Label::Alignment::center);
  label_.setFrame(bounds());
  label_.autoresizing = {.width = true, .height = true};
  setVisibility(0);
}

void ZoomIndicatorView::show(double zoom) {
  label_.setText(std::to_string(std::lround(zoom * 100)) + "%");
  Rect next{frame().origin, {label_.fittingSize().width + kRoomBesideText, kHeight}};
  if (superview() != nullptr) {
    next.origin = {superview()->bounds().size.width - next.size.width - kMargin, kMargin};
  }
  setFrame(next);
  fade_.show(alpha());
}

void ZoomIndicatorView::setVisibility(double alpha) {
  setAlpha(alpha);
  setPassesPointerThrough(alpha < kTouchableAlpha);
}

void ZoomIndicatorView::draw(const Cairo::RefPtr<Cairo::Context>& context) {
  roundedRectangle(context, bounds(), kCornerRadius);
  context->set_source_rgba(kBackground.red, kBackground.green, kBackground.blue, kBackground.alpha);
  context->fill();
}

}  // namespace velto
