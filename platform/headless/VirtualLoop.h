#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/loop/Clock.h"
#include "platform/loop/MainQueue.h"

namespace velto {

/// The main queue and the clock of a test: time stands still until the test moves it.
///
/// Uptime starts at 1000 s, the wall clock at 2024-01-02T03:04:05Z. Time is kept in whole nanoseconds, so
/// that ten steps of 0.1 s reach a deadline of 1 s. Work may call `jump`, but not the members that
/// run work.
class VirtualLoop final : public MainQueue, public Clock {
 public:
  VirtualLoop();
  ~VirtualLoop() override;

  [[nodiscard]] WallTime now() const override;
  [[nodiscard]] Uptime uptime() const override;

  void async(Task task) override;
  [[nodiscard]] Timer every(double seconds, std::function<void()> work) override;

  /// Empties the queue, then runs all that is due within the time in order of due time, ties in order of
  /// scheduling. The clock stands at the due time while each runs, and the queue is emptied after each.
  /// Throws `std::runtime_error` when work keeps making work without time going by.
  void advance(double seconds);
  /// Runs queued work until there is none; time stands still and nothing that is merely due is run.
  void drain();
  /// Time goes by and nothing runs, as while the machine sleeps or the thread is busy.
  void jump(double seconds);

  [[nodiscard]] std::size_t queuedTasks() const;
  [[nodiscard]] std::size_t pendingWorkItems() const;
  [[nodiscard]] std::size_t runningTimers() const;
  /// Nothing is queued, nothing is to come and nothing ticks.
  [[nodiscard]] bool isIdle() const;

  /// Drops everything queued and scheduled without running it; the captures are freed.
  void discardAll();

 protected:
  void schedule(double seconds, std::shared_ptr<WorkItem::State> state) override;

 private:
  using Nanoseconds = std::int64_t;
  /// Due time, then order of scheduling.
  using Key = std::pair<Nanoseconds, std::uint64_t>;
  struct Repeating {
    std::function<void()> work;
    Nanoseconds start;
    Nanoseconds interval;
    Key key;
  };
  /// One of the two is set.
  struct Wakeup {
    std::shared_ptr<WorkItem::State> item;
    std::shared_ptr<Repeating> timer;
  };
  using Wakeups = std::map<Key, Wakeup>;

  static Nanoseconds fromSeconds(double seconds);
  /// Runs what is queued now and leaves what that work queues for the next turn. False when nothing was
  /// queued.
  bool runTurn();
  Key nextKey(Nanoseconds due) { return {due, ++sequence_}; }
  void run(const Wakeups::iterator& next);

  Nanoseconds uptime_;
  std::uint64_t sequence_ = 0;
  /// Shared, so that a work item or a timer that outlives the loop finds it gone.
  std::shared_ptr<Wakeups> wakeups_ = std::make_shared<Wakeups>();
  mutable std::mutex mutex_;
  std::deque<Task> queue_;
};

}  // namespace velto
