#pragma once

#include <memory>
#include <vector>

#include "platform/loop/MainQueue.h"

namespace velto {

/// Counts pieces of asynchronous work and tells when all of them are done. Main thread only. Copies share the
/// count, so the completion of each piece can hold one.
class DispatchGroup {
 public:
  explicit DispatchGroup(MainQueue& queue);

  void enter();
  /// One for each `enter`.
  void leave();
  /// Queues the task on the main queue when the count next reaches zero, or now when it is zero; several are
  /// queued in the order of these calls.
  void notify(Task task);

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace velto
