#pragma once

#include <functional>

#include "platform/foundation/WeakPtr.h"
#include "platform/loop/MainQueue.h"
#include "platform/ui/Animator.h"

namespace velto {

/// Shows something for a moment: fades it in, waits two seconds, fades it out. Nothing more happens once this
/// object is gone. Main thread only.
class MomentaryFade : public Weakable {
 public:
  static constexpr double kFadeIn = 0.15;
  static constexpr double kWait = 2.0;
  static constexpr double kFadeOut = 0.3;

  /// `setAlpha` is given each alpha value from 0 to 1; `faded` is called when it is 0 again.
  MomentaryFade(const Animator& animator, MainQueue& mainQueue, std::function<void(double)> setAlpha,
                std::function<void()> faded = {});
  ~MomentaryFade();
  MomentaryFade(const MomentaryFade&) = delete;
  MomentaryFade& operator=(const MomentaryFade&) = delete;

  /// Begins at this alpha value, which is best the present one. What was going on ends; the wait, counted
  /// from now, starts again.
  void show(double fromAlpha);

 private:
  void fade(double to, double seconds, const std::function<void()>& finished);

  Animator animator_;
  MainQueue& mainQueue_;
  std::function<void(double)> setAlpha_;
  std::function<void()> faded_;
  double alpha_ = 0;
  Animation animation_;
  WorkItem hideTimer_;
};

}  // namespace velto
