#include "platform/ui/Animator.h"

#include <algorithm>

#include "platform/ui/Application.h"

namespace velto {

namespace {

constexpr double kFrameInterval = 1.0 / 60;

double eased(Animator::Curve curve, double t) {
  return curve == Animator::Curve::easeInOut ? t * t * (3 - 2 * t) : t;
}

}  // namespace

Animation& Animation::operator=(Animation&& other) noexcept {
  if (this != &other) {
    stop();
    timer_ = std::move(other.timer_);
  }
  return *this;
}

void Animation::stop() {
  if (timer_) timer_->stop();
}

Animation Animator::animate(double seconds, Curve curve, std::function<void(double progress)> step,
                            std::function<void()> finished) const {
  Animation animation;
  if (seconds <= 0 || desktop_->prefersReducedMotion()) {
    step(1);
    if (finished) finished();
    return animation;
  }
  animation.timer_ = std::make_shared<Timer>();
  const Uptime start = clock_->uptime();
  *animation.timer_ =
      queue_->every(kFrameInterval, [step = std::move(step), finished = std::move(finished), seconds, curve,
                                     start, clock = clock_, weakTimer = std::weak_ptr(animation.timer_)] {
        const double t = std::min((clock->uptime().seconds - start.seconds) / seconds, 1.0);
        if (t < 1) return step(eased(curve, t));
        // The queue holds this work while it runs, so the end may well be the end of its owner.
        if (const auto timer = weakTimer.lock()) timer->stop();
        const auto last = step;
        const auto end = finished;
        last(1);
        if (end) end();
      });
  return animation;
}

}  // namespace velto
