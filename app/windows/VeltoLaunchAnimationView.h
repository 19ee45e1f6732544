#pragma once

#include <optional>

#include "platform/loop/Clock.h"
#include "platform/loop/MainQueue.h"
#include "platform/ui/View.h"

namespace velto {

/// The application's mark, drawn stroke by stroke in a second and a half, once, when it first comes into a
/// window. With reduced motion it stands there finished at once.
class VeltoLaunchAnimationView : public View {
 public:
  static constexpr double kSide = 92;
  static constexpr double kDuration = 1.5;

  VeltoLaunchAnimationView(const Clock& clock, MainQueue& mainQueue);

  /// 0 nothing drawn yet, 1 finished.
  [[nodiscard]] double phase() const { return phase_; }
  [[nodiscard]] bool hasAnimated() const { return hasAnimated_; }
  [[nodiscard]] bool isAnimating() const { return animationTimer_.isRunning(); }
  void draw(const Cairo::RefPtr<Cairo::Context>& context) override;
  void didMoveToWindow(Window* window) override;

 private:
  void step();
  void setPhase(double phase);

  const Clock& clock_;
  MainQueue& mainQueue_;
  double phase_ = 0;
  bool hasAnimated_ = false;
  std::optional<Uptime> animationStart_;
  Timer animationTimer_;
};

}  // namespace velto
