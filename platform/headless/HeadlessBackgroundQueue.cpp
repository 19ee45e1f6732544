#include "platform/headless/HeadlessBackgroundQueue.h"

#include <utility>

namespace velto {

void HeadlessBackgroundQueue::async(Task task) {
  if (held_) {
    tasks_.push_back(std::move(task));
  } else {
    task();
  }
}

bool HeadlessBackgroundQueue::runOne() {
  if (tasks_.empty()) return false;
  Task task = std::move(tasks_.front());
  tasks_.pop_front();
  task();
  return true;
}

void HeadlessBackgroundQueue::runAll() {
  while (runOne()) {
  }
}

void HeadlessBackgroundQueue::discardAll() {
  while (!tasks_.empty()) {
    const Task freed = std::move(tasks_.front());
    tasks_.pop_front();
  }
}

}  // namespace velto
