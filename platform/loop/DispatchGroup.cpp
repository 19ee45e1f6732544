#include "platform/loop/DispatchGroup.h"

#include <cassert>
#include <utility>

namespace velto {

struct DispatchGroup::State {
  MainQueue& queue;
  int entered = 0;
  std::vector<Task> waiting;
};

DispatchGroup::DispatchGroup(MainQueue& queue) : state_(new State{queue, 0, {}}) {}

void DispatchGroup::enter() { ++state_->entered; }

void DispatchGroup::leave() {
  assert(state_->entered > 0);
  if (--state_->entered > 0) return;
  for (Task& task : std::exchange(state_->waiting, {})) state_->queue.async(std::move(task));
}

void DispatchGroup::notify(Task task) {
  if (state_->entered == 0) {
    state_->queue.async(std::move(task));
  } else {
    state_->waiting.push_back(std::move(task));
  }
}

}  // namespace velto
