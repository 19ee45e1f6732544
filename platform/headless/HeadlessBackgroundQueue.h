#pragma once

#include <cstddef>
#include <deque>

#include "platform/loop/MainQueue.h"

namespace velto {

/// Background work on the test's own thread: at once, or while it is held, piece by piece when the test says
/// so. Main thread only.
class HeadlessBackgroundQueue final : public BackgroundQueue {
 public:
  void async(Task task) override;

  /// Letting go does not run what was held.
  void hold(bool held) { held_ = held; }
  /// Runs the oldest held piece; false when there is none.
  bool runOne();
  /// Runs all, those that are added meanwhile too.
  void runAll();
  [[nodiscard]] std::size_t heldTasks() const { return tasks_.size(); }
  void discardAll();

 private:
  bool held_ = false;
  std::deque<Task> tasks_;
};

}  // namespace velto
