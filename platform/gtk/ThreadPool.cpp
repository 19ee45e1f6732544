#include "platform/gtk/ThreadPool.h"

#include <utility>

#include "platform/gtk/Guard.h"

namespace velto {

ThreadPool::~ThreadPool() {
  std::deque<Task> dropped;
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
    dropped.swap(tasks_);
  }
  wake_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void ThreadPool::async(Task task) {
  const std::lock_guard lock(mutex_);
  if (ending_) return;
  tasks_.push_back(std::move(task));
  if (tasks_.size() > idle_ && threads_.size() < kMostThreads) threads_.emplace_back([this] { work(); });
  wake_.notify_one();
}

void ThreadPool::work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    ++idle_;
    wake_.wait(lock, [this] { return ending_ || !tasks_.empty(); });
    --idle_;
    if (ending_) return;
    Task task = std::move(tasks_.front());
    tasks_.pop_front();
    lock.unlock();
    guarded(task);
    task = nullptr;
    lock.lock();
  }
}

}  // namespace velto
