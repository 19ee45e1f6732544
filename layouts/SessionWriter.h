#pragma once

#include <memory>
#include <string>

#include "layouts/SessionStore.h"
#include "platform/loop/MainQueue.h"

namespace velto {

/// Writes encoded sessions in the background, one at a time and in their order. While a write is under way
/// only the newest of those that came meanwhile waits. A write that fails is ignored. Main thread only.
class SessionWriter {
 public:
  SessionWriter(const SessionStore& store, BackgroundQueue& queue);

  /// Returns at once, whatever the disk does.
  void write(std::string encoded);
  /// Returns when everything is written; what a background queue drops at its end is not lost then.
  void finish();

 private:
  struct State;
  static void writeNewest(State& state);

  /// Shared with the work in the background, which may outlive this.
  std::shared_ptr<State> state_;
  BackgroundQueue& queue_;
};

}  // namespace velto
