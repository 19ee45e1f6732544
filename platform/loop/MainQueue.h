#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace velto {

using Task = std::move_only_function<void()>;

/// A piece of delayed work that can be called off. Copies share the work; dropping every copy does not cancel
/// it.
class WorkItem {
 public:
  struct State {
    Task task;
    bool cancelled = false;
    /// Set by the backend: takes the wake-up out of its loop.
    std::function<void()> unschedule;
  };

  WorkItem() = default;
  explicit WorkItem(std::shared_ptr<State> state) : state_(std::move(state)) {}

  /// Before it has started the work never runs and its captures are freed at once; afterwards nothing
  /// happens.
  void cancel();
  /// Whether the work is still to come.
  [[nodiscard]] bool isPending() const;

 private:
  std::shared_ptr<State> state_;
};

/// A repeating timer that runs for as long as this object lives. It keeps to the grid of its first start;
/// fires that were missed while the thread was busy collapse into one.
class Timer {
 public:
  Timer() = default;
  explicit Timer(std::function<void()> stop) : stop_(std::move(stop)) {}
  Timer(Timer&& other) noexcept : stop_(std::exchange(other.stop_, nullptr)) {}
  Timer& operator=(Timer&& other) noexcept;
  ~Timer() { stop(); }

  /// May be called from within the timer's own work.
  void stop();
  [[nodiscard]] bool isRunning() const { return stop_ != nullptr; }

 private:
  std::function<void()> stop_;
};

/// The queue of the main thread: first in, first out, never inline.
class MainQueue {
 public:
  virtual ~MainQueue() = default;

  /// Runs after everything queued before it. Work queued by running work waits for the next turn.
  /// Thread-safe; all other members are for the main thread.
  virtual void async(Task task) = 0;

  /// Runs once, after `seconds` (0 or more) and after everything already queued. Different deadlines run in
  /// their order, equal ones in the order of these calls.
  WorkItem after(double seconds, Task task);

  /// First runs one interval from now. Intervals below a millisecond count as one.
  [[nodiscard]] virtual Timer every(double seconds, std::function<void()> work) = 0;

 protected:
  /// Runs `runWorkItem(state)` at the time and sets `state->unschedule`.
  virtual void schedule(double seconds, std::shared_ptr<WorkItem::State> state) = 0;
  static void runWorkItem(WorkItem::State& state);
};

/// A small pool for work that may block. Results come back through the main queue.
class BackgroundQueue {
 public:
  virtual ~BackgroundQueue() = default;
  /// Thread-safe. Work still queued when the program ends is not run.
  virtual void async(Task task) = 0;
};

}  // namespace velto
