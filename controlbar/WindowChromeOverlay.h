#pragma once

#include "controlbar/DragEdgeView.h"
#include "controlbar/ResizeCornerView.h"

namespace velto {

/// Lies over a window's page: thin grips along its edges that move the window, and grips in its corners that
/// resize it. Everything between them goes through to the page. In a window too small to hold them the grips
/// stay where they were.
class WindowChromeOverlay : public View {
 public:
  static constexpr double kEdgeThickness = 10;
  static constexpr double kCornerSize = 22;

  explicit WindowChromeOverlay(const Rect& frame);

 protected:
  void didResize() override { layOutGrips(); }

 private:
  void layOutGrips();

  // Below the corners, which come later. Those who share a point would be asked from the last to the first.
  DragEdgeView& rightEdge_;
  DragEdgeView& leftEdge_;
  DragEdgeView& bottomEdge_;
  DragEdgeView& topEdge_;
  ResizeCornerView& bottomRightCorner_;
  ResizeCornerView& bottomLeftCorner_;
  ResizeCornerView& topRightCorner_;
  ResizeCornerView& topLeftCorner_;
};

}  // namespace velto
