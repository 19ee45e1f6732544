#include "platform/loop/MainQueue.h"

namespace velto {

void WorkItem::cancel() {
  if (!state_ || state_->cancelled) return;
  state_->cancelled = true;
  if (auto unschedule = std::exchange(state_->unschedule, nullptr)) unschedule();
  const Task freed = std::exchange(state_->task, nullptr);
}

bool WorkItem::isPending() const { return state_ && !state_->cancelled && state_->task != nullptr; }

Timer& Timer::operator=(Timer&& other) noexcept {
  if (this != &other) {
    stop();
    stop_ = std::exchange(other.stop_, nullptr);
  }
  return *this;
}

void Timer::stop() {
  if (auto stop = std::exchange(stop_, nullptr)) stop();
}

WorkItem MainQueue::after(double seconds, Task task) {
  auto state = std::make_shared<WorkItem::State>();
  state->task = std::move(task);
  schedule(seconds > 0 ? seconds : 0, state);
  return WorkItem(std::move(state));
}

void MainQueue::runWorkItem(WorkItem::State& state) {
  state.unschedule = nullptr;
  if (Task task = std::exchange(state.task, nullptr); task && !state.cancelled) task();
}

}  // namespace velto
