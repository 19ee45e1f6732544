#include "layouts/SessionWriter.h"

#include <mutex>
#include <optional>
#include <utility>

namespace velto {

struct SessionWriter::State {
  explicit State(const SessionStore& sessions) : store(sessions) {}

  SessionStore store;
  /// Held during a write.
  std::mutex disk;
  /// Held for a moment, to look at what waits.
  std::mutex slot;
  std::optional<std::string> waiting;
};

SessionWriter::SessionWriter(const SessionStore& store, BackgroundQueue& queue)
    : state_(std::make_shared<State>(store)), queue_(queue) {}

void SessionWriter::write(std::string encoded) {
  bool isQueued = false;
  {
    const std::lock_guard lock(state_->slot);
    isQueued = state_->waiting.has_value();
    state_->waiting = std::move(encoded);
  }
  // A disk that hangs holds no more than two threads: one that writes, and one that waits for it.
  if (!isQueued) queue_.async([state = state_] { writeNewest(*state); });
}

void SessionWriter::finish() { writeNewest(*state_); }

void SessionWriter::writeNewest(State& state) {
  const std::lock_guard disk(state.disk);
  std::optional<std::string> encoded;
  {
    const std::lock_guard lock(state.slot);
    encoded = std::exchange(state.waiting, std::nullopt);
  }
  if (!encoded) return;
  try {
    state.store.write(*encoded);
  } catch (const FileError&) {
    // The next session is written over the old one all the same.
  }
}

}  // namespace velto
