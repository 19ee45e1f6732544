#pragma once

#include <algorithm>

#include "platform/foundation/Date.h"

namespace velto {

/// How many seconds of the main thread something may take: at most `capacity` at once, and `perSecond` in
/// each second from then on. More can be spent than is left, and is owed.
class CostAllowance {
 public:
  CostAllowance(double capacity, double perSecond)
      : capacity_(capacity), perSecond_(perSecond), left_(capacity) {}

  /// False when nothing is left.
  bool spend(double seconds, Uptime now) {
    left_ = left(now) - seconds;
    asOf_ = now;
    return left_ > 0;
  }
  [[nodiscard]] double left(Uptime now) const {
    return std::min(capacity_, left_ + std::max(0.0, now.seconds - asOf_.seconds) * perSecond_);
  }
  [[nodiscard]] bool isHalf(Uptime now) const { return left(now) >= capacity_ / 2; }
  [[nodiscard]] double secondsUntilFull(Uptime now) const { return (capacity_ - left(now)) / perSecond_; }

 private:
  double capacity_;
  double perSecond_;
  double left_;
  Uptime asOf_;
};

}  // namespace velto
