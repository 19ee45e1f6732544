#include "app/windows/DialogLimit.h"

#include <utility>

namespace velto {

DialogLimit::Verdict DialogLimit::asked(Uptime now, std::optional<Uptime> lastGesture) {
  if (std::exchange(lastGesture_, lastGesture) != lastGesture) following_ = 0;
  if (admits(now)) {
    said_ = false;
    return Verdict::show;
  }
  return std::exchange(said_, true) ? Verdict::refuse : Verdict::refuseAndSay;
}

bool DialogLimit::admits(Uptime now) {
  if (following_ == kMostFollowing || !shown_.admit(now)) return false;
  const bool follows = lastAnswer_ && now.seconds - lastAnswer_->seconds < kFollowsWithin;
  following_ = follows ? following_ + 1 : 0;
  return true;
}

}  // namespace velto
