#pragma once

#include <chrono>

#include "platform/loop/Clock.h"

namespace velto {

/// The machine's clocks. Thread-safe.
class SystemClock final : public Clock {
 public:
  [[nodiscard]] WallTime now() const override { return {seconds(std::chrono::system_clock::now())}; }
  [[nodiscard]] Uptime uptime() const override { return {seconds(std::chrono::steady_clock::now())}; }

 private:
  template <class TimePoint>
  static double seconds(TimePoint time) {
    return std::chrono::duration<double>(time.time_since_epoch()).count();
  }
};

}  // namespace velto
