#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/loop/Clock.h"
#include "platform/loop/MainQueue.h"

namespace velto {

class WindowSystem;

/// A change that is being shown step by step. It stops where it is when this object goes or is replaced.
class Animation {
 public:
  Animation() = default;
  Animation(Animation&&) noexcept = default;
  Animation& operator=(Animation&& other) noexcept;
  ~Animation() { stop(); }

  [[nodiscard]] bool isRunning() const { return timer_ && timer_->isRunning(); }
  void stop();

 private:
  friend class Animator;
  /// Shared with the timer's own work, which ends it.
  std::shared_ptr<Timer> timer_;
};

/// Shows changes step by step, once per frame and for no longer than they last: at rest nothing ticks. A
/// value; what it refers to outlives it and its animations. Main thread only.
class Animator {
 public:
  enum class Curve { linear, easeInOut };

  Animator(const Clock& clock, MainQueue& queue, const WindowSystem& desktop)
      : clock_(&clock), queue_(&queue), desktop_(&desktop) {}

  /// Calls `step` with how far the change has come, from above 0 to exactly 1, and then `finished`. Where the
  /// person asked for less motion, `step(1)` and `finished` come at once, before this returns.
  [[nodiscard]] Animation animate(double seconds, Curve curve, std::function<void(double progress)> step,
                                  std::function<void()> finished = {}) const;

 private:
  const Clock* clock_;
  MainQueue* queue_;
  const WindowSystem* desktop_;
};

/// The point of the way from `from` to `to` that `progress` (0 to 1) has come to.
constexpr double interpolate(double from, double to, double progress) {
  return from + (to - from) * progress;
}

}  // namespace velto
