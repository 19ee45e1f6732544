#pragma once

#include <string>

#include "platform/ui/View.h"

namespace velto {

enum class Corner { topLeft, topRight, bottomLeft, bottomRight };

/// No window can be dragged smaller than this, whatever its own minimum size.
constexpr double kMinimumWindowSide = 25;

/// The frame of a window whose corner is dragged.
struct CornerDrag {
  Corner corner = Corner::topLeft;
  /// The window's frame as the drag began.
  Rect startFrame;
  Size minSize;
  /// Width to height that is kept; free unless both are above 0.
  Size aspectRatio;

  /// After the pointer has travelled so far, in screen coordinates. The opposite corner stays where it is.
  [[nodiscard]] Rect frameAfter(double dx, double dy) const;
};

/// A grip on which the person takes hold of a corner of the window and resizes it.
class ResizeCornerView : public View {
 public:
  ResizeCornerView(Corner corner, std::string identifier);

  bool mouseDown(const MouseEvent& event) override;
  bool mouseDragged(const MouseEvent& event) override;
  bool mouseUp(const MouseEvent&) override { return true; }

 private:
  Corner corner_;
  /// In screen coordinates, as the drag began.
  Rect startWindowFrame_;
  Point startMouseScreenLocation_;
};

}  // namespace velto
