#include "controlbar/WindowChromeOverlay.h"

#include <memory>

namespace velto {

namespace {

DragEdgeView& addEdge(View& overlay, const char* identifier) {
  return overlay.addSubview(std::make_unique<DragEdgeView>(identifier));
}

ResizeCornerView& addCorner(View& overlay, Corner corner, const char* identifier) {
  return overlay.addSubview(std::make_unique<ResizeCornerView>(corner, identifier));
}

}  // namespace

WindowChromeOverlay::WindowChromeOverlay(const Rect& frame)
    : View(frame),
      rightEdge_(addEdge(*this, "hovrel-right-edge")),
      leftEdge_(addEdge(*this, "hovrel-left-edge")),
      bottomEdge_(addEdge(*this, "hovrel-bottom-edge")),
      topEdge_(addEdge(*this, "hovrel-top-edge")),
      bottomRightCorner_(addCorner(*this, Corner::bottomRight, "hovrel-bottom-right-corner")),
      bottomLeftCorner_(addCorner(*this, Corner::bottomLeft, "hovrel-bottom-left-corner")),
      topRightCorner_(addCorner(*this, Corner::topRight, "hovrel-top-right-corner")),
      topLeftCorner_(addCorner(*this, Corner::topLeft, "hovrel-top-left-corner")) {
  setIdentifier("hovrel-window-chrome");
  setPassesPointerThrough(true);
  layOutGrips();
}

void WindowChromeOverlay::layOutGrips() {
  const double right = bounds().size.width;
  const double top = bounds().size.height;
  constexpr double kCorner = kCornerSize;
  constexpr double kEdge = kEdgeThickness;
  if (right <= 2 * kCorner || top <= 2 * kCorner) return;
  topLeftCorner_.setFrame({{0, top - kCorner}, {kCorner, kCorner}});
  topRightCorner_.setFrame({{right - kCorner, top - kCorner}, {kCorner, kCorner}});
  bottomLeftCorner_.setFrame({{0, 0}, {kCorner, kCorner}});
  bottomRightCorner_.setFrame({{right - kCorner, 0}, {kCorner, kCorner}});
  topEdge_.setFrame({{kCorner, top - kEdge}, {right - 2 * kCorner, kEdge}});
  bottomEdge_.setFrame({{kCorner, 0}, {right - 2 * kCorner, kEdge}});
  leftEdge_.setFrame({{0, kCorner}, {kEdge, top - 2 * kCorner}});
  rightEdge_.setFrame({{right - kEdge, kCorner}, {kEdge, top - 2 * kCorner}});
}

}  // namespace velto
