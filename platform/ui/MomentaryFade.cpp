#include "platform/ui/MomentaryFade.h"

#include <utility>

namespace velto {

MomentaryFade::MomentaryFade(const Animator& animator, MainQueue& mainQueue,
                             std::function<void(double)> setAlpha, std::function<void()> faded)
    : animator_(animator), mainQueue_(mainQueue), setAlpha_(std::move(setAlpha)), faded_(std::move(faded)) {}

MomentaryFade::~MomentaryFade() { hideTimer_.cancel(); }

void MomentaryFade::show(double fromAlpha) {
  hideTimer_.cancel();
  alpha_ = fromAlpha;
  fade(1, kFadeIn, {});
  hideTimer_ = mainQueue_.after(kWait, [self = WeakPtr<MomentaryFade>(*this)] {
    if (self) self->fade(0, kFadeOut, self->faded_);
  });
}

void MomentaryFade::fade(double to, double seconds, const std::function<void()>& finished) {
  const auto step = [this, from = alpha_, to](double progress) {
    alpha_ = interpolate(from, to, progress);
    setAlpha_(alpha_);
  };
  animation_ = animator_.animate(seconds, Animator::Curve::easeInOut, step, finished);
}

}  // namespace velto
