#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/loop/MainQueue.h"

namespace velto {

/// A few threads, each started when there is work and no thread is free for it. Work is taken first in, first
/// out. The destructor waits for the work that runs and drops the rest.
class ThreadPool final : public BackgroundQueue {
 public:
  static constexpr std::size_t kMostThreads = 4;

  ThreadPool() = default;
  ThreadPool(const ThreadPool&) = delete;
  ThreadPool& operator=(const ThreadPool&) = delete;
  ~ThreadPool() override;
  void async(Task task) override;

 private:
  void work();

  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<Task> tasks_;
  std::size_t idle_ = 0;
  bool ending_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace velto
