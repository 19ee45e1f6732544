#pragma once

#include <cstddef>
#include <deque>

#include "platform/foundation/Date.h"

namespace velto {

/// Lets so many things happen within any stretch of so many seconds.
class RollingLimit {
 public:
  RollingLimit(std::size_t most, double seconds) : most_(most), seconds_(seconds) {}

  /// Whether one more may happen now; if so it counts.
  bool admit(Uptime now) {
    while (!admitted_.empty() && now.seconds - admitted_.front().seconds >= seconds_) admitted_.pop_front();
    if (admitted_.size() >= most_) return false;
    admitted_.push_back(now);
    return true;
  }
  void clear() { admitted_.clear(); }

 private:
  std::size_t most_;
  double seconds_;
  std::deque<Uptime> admitted_;
};

}  // namespace velto
