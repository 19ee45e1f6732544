#pragma once

#include <chrono>

namespace velto {

/// A moment until which one is prepared to wait, on the steady clock.
class Deadline {
 public:
  using Clock = std::chrono::steady_clock;

  explicit Deadline(std::chrono::milliseconds fromNow) : moment_(Clock::now() + fromNow) {}

  [[nodiscard]] Clock::time_point moment() const { return moment_; }
  [[nodiscard]] bool passed() const { return Clock::now() >= moment_; }

  /// Milliseconds left, as poll(2) takes them: rounded up, never negative.
  [[nodiscard]] int millisecondsLeft() const;

  /// Waits until one of the poll(2) `events`, an error or a hang-up shows on `descriptor`; false when the
  /// moment came first. Interruptions by signals are no end of the wait.
  [[nodiscard]] bool awaits(int descriptor, short events) const;

  /// Sleeps `pause`, but not beyond the moment.
  void rest(std::chrono::milliseconds pause) const;

 private:
  Clock::time_point moment_;
};

}  // namespace velto
