#pragma once

#include <array>

#include "controlbar/TrafficLightDot.h"
#include "platform/ui/Animator.h"

namespace velto {

/// The row of the three dots at a window's top left. They grow when the pointer comes near, whether or not
/// the window has the keyboard.
class AnimatedTrafficLightsView : public View {
 public:
  AnimatedTrafficLightsView(const Rect& frame, WeakPtr<Window> targetWindow, const Animator& animator);

  [[nodiscard]] bool isExpanded() const { return isExpanded_; }
  void mouseEntered(const MouseEvent&) override { expand(true); }
  void mouseExited(const MouseEvent&) override { expand(false); }

 private:
  void expand(bool expanded);

  Animator animator_;
  std::array<TrafficLightDot*, 3> dots_;
  /// What the pointer asked for last; `expansion_` is how far that has come, from 0 to 1.
  bool isExpanded_ = false;
  double expansion_ = 0;
  Animation animation_;
};

}  // namespace velto
