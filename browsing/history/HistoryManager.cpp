#include "browsing/history/HistoryManager.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <exception>
#include <mutex>
#include <utility>

namespace velto {

struct HistoryManager::State {
  State(std::shared_ptr<HistoryStore> history, MainQueue& queue, NotificationCenter& center)
      : store(std::move(history)), mainQueue(queue), notifications(center) {}

  const std::shared_ptr<HistoryStore> store;
  MainQueue& mainQueue;
  NotificationCenter& notifications;
  /// Held during a write.
  std::mutex disk;
  /// Held for a moment, to look at what waits.
  std::mutex slot;
  /// What is being written stays until it is.
  std::deque<Change> waiting;
};

HistoryManager::HistoryManager(std::shared_ptr<HistoryStore> store, const Clock& clock, MainQueue& mainQueue,
                               BackgroundQueue& backgroundQueue, NotificationCenter& notifications)
    : state_(std::make_shared<State>(std::move(store), mainQueue, notifications)),
      clock_(clock),
      backgroundQueue_(backgroundQueue) {}

void HistoryManager::record(const Url& url, const std::string& title) {
  const std::string& address = url.absoluteString();
  add(HistoryEntry{address, title.empty() ? url.host().value_or(address) : title, clock_.now()});
}

void HistoryManager::clear() { add(std::nullopt); }

void HistoryManager::finish() { carryOutAll(*state_); }

void HistoryManager::add(Change change) {
  bool isFirst = false;
  {
    const std::lock_guard lock(state_->slot);
    isFirst = state_->waiting.empty();
    state_->waiting.push_back(std::move(change));
  }
  // Whoever writes goes on until nothing waits, so a disk that hangs holds no more than one thread.
  if (isFirst) backgroundQueue_.async([state = state_] { carryOutAll(*state); });
}

void HistoryManager::carryOutAll(State& state) {
  const std::lock_guard disk(state.disk);
  for (;;) {
    std::vector<HistoryEntry> visits;
    {
      const std::lock_guard lock(state.slot);
      if (state.waiting.empty()) return;
      for (const Change& change : state.waiting) {
        if (!change) break;
        visits.push_back(*change);
      }
    }
    carryOut(*state.store, visits);
    const std::size_t changes = std::max<std::size_t>(visits.size(), 1);
    {
      const std::lock_guard lock(state.slot);
      state.waiting.erase(state.waiting.begin(),
                          state.waiting.begin() + static_cast<std::ptrdiff_t>(changes));
    }
    for (std::size_t each = 0; each < changes; ++each) {
      state.mainQueue.async([&notifications = state.notifications] { notifications.post(kDidChange); });
    }
  }
}

/// No visits stand for clearing.
void HistoryManager::carryOut(HistoryStore& store, const std::vector<HistoryEntry>& visits) {
  try {
    if (visits.empty()) {
      store.save({});
    } else {
      store.recordAll(visits);
    }
  } catch (const std::exception&) {
    // Nothing can be done about it, and the page is there all the same.
  }
}

std::optional<Url> HistoryManager::newestPage() const {
  {
    const std::lock_guard lock(state_->slot);
    if (!state_->waiting.empty()) {
      const Change& last = state_->waiting.back();
      return last ? Url::parse(last->url) : std::nullopt;
    }
  }
  return newestWebPage(*state_->store);
}

}  // namespace velto
