#pragma once

#include <string>

#include "platform/ui/View.h"

namespace velto {

/// A grip on which the person takes hold of the window and moves it.
class DragEdgeView : public View {
 public:
  explicit DragEdgeView(std::string identifier);

  bool mouseDown(const MouseEvent& event) override;
  bool mouseDragged(const MouseEvent& event) override;
  bool mouseUp(const MouseEvent& event) override;

 private:
  /// In screen coordinates, as the drag began.
  Point startMouseScreenLocation_;
  Point startWindowOrigin_;
};

}  // namespace velto
