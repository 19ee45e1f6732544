#include "platform/headless/VirtualLoop.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace velto {

namespace {

constexpr double kPerSecond = 1e9;
constexpr std::int64_t kFirstUptime = 1000 * 1'000'000'000LL;
/// 2024-01-02T03:04:05Z
constexpr std::int64_t kFirstWallTime = 1'704'164'645 * 1'000'000'000LL;
/// Some sixty years; far enough to be never, near enough to be added to a time.
constexpr double kLongestSeconds = 2e9;
/// No test has so much to do at one moment.
constexpr int kMostWorkAtOnce = 100'000;

[[noreturn]] void failRestless() {
  throw std::runtime_error("The loop does not come to rest: work keeps making work without time going by");
}

}  // namespace

VirtualLoop::VirtualLoop() : uptime_(kFirstUptime) {}

VirtualLoop::~VirtualLoop() { discardAll(); }

VirtualLoop::Nanoseconds VirtualLoop::fromSeconds(double seconds) {
  if (!(seconds > 0)) return 0;
  return std::llround(std::min(seconds, kLongestSeconds) * kPerSecond);
}

WallTime VirtualLoop::now() const {
  return {static_cast<double>(uptime_ - kFirstUptime + kFirstWallTime) / kPerSecond};
}

Uptime VirtualLoop::uptime() const { return {static_cast<double>(uptime_) / kPerSecond}; }

void VirtualLoop::jump(double seconds) { uptime_ += fromSeconds(seconds); }

void VirtualLoop::async(Task task) {
  const std::lock_guard lock(mutex_);
  queue_.push_back(std::move(task));
}

bool VirtualLoop::runTurn() {
  const std::size_t count = queuedTasks();
  for (std::size_t i = 0; i < count; ++i) {
    Task task;
    {
      const std::lock_guard lock(mutex_);
      if (queue_.empty()) break;
      task = std::move(queue_.front());
      queue_.pop_front();
    }
    task();
  }
  return count > 0;
}

void VirtualLoop::drain() {
  for (int turns = 0; runTurn();) {
    if (++turns > kMostWorkAtOnce) failRestless();
  }
}

void VirtualLoop::advance(double seconds) {
  const Nanoseconds target = uptime_ + fromSeconds(seconds);
  drain();
  int runAtOnce = 0;
  while (!wakeups_->empty() && wakeups_->begin()->first.first <= target) {
    const auto next = wakeups_->begin();
    runAtOnce = next->first.first > uptime_ ? 0 : runAtOnce + 1;
    if (runAtOnce > kMostWorkAtOnce) failRestless();
    uptime_ = std::max(uptime_, next->first.first);
    run(next);
    drain();
  }
  uptime_ = std::max(uptime_, target);
}

void VirtualLoop::run(const Wakeups::iterator& next) {
  const Wakeup wakeup = std::move(next->second);
  wakeups_->erase(next);
  if (wakeup.item) {
    runWorkItem(*wakeup.item);
    return;
  }
  Repeating& timer = *wakeup.timer;
  const Nanoseconds fires = (uptime_ - timer.start) / timer.interval + 1;
  timer.key = nextKey(timer.start + fires * timer.interval);
  (*wakeups_)[timer.key] = wakeup;
  timer.work();
}

void VirtualLoop::schedule(double seconds, std::shared_ptr<WorkItem::State> state) {
  const Key key = nextKey(uptime_ + fromSeconds(seconds));
  state->unschedule = [wakeups = std::weak_ptr(wakeups_), key] {
    if (const auto all = wakeups.lock()) all->erase(key);
  };
  (*wakeups_)[key] = {std::move(state), nullptr};
}

Timer VirtualLoop::every(double seconds, std::function<void()> work) {
  const Nanoseconds interval = std::max<Nanoseconds>(fromSeconds(seconds), 1'000'000);
  const auto timer =
      std::make_shared<Repeating>(Repeating{std::move(work), uptime_, interval, nextKey(uptime_ + interval)});
  (*wakeups_)[timer->key] = {nullptr, timer};
  return Timer([wakeups = std::weak_ptr(wakeups_), weak = std::weak_ptr(timer)] {
    const auto all = wakeups.lock();
    const auto stopped = weak.lock();
    if (all && stopped) all->erase(stopped->key);
  });
}

std::size_t VirtualLoop::queuedTasks() const {
  const std::lock_guard lock(mutex_);
  return queue_.size();
}

std::size_t VirtualLoop::runningTimers() const {
  return static_cast<std::size_t>(std::count_if(
      wakeups_->begin(), wakeups_->end(), [](const auto& entry) { return entry.second.timer != nullptr; }));
}

std::size_t VirtualLoop::pendingWorkItems() const { return wakeups_->size() - runningTimers(); }

bool VirtualLoop::isIdle() const { return wakeups_->empty() && queuedTasks() == 0; }

void VirtualLoop::discardAll() {
  while (!isIdle()) {
    std::deque<Task> tasks;
    {
      const std::lock_guard lock(mutex_);
      tasks.swap(queue_);
    }
    // Freeing a capture may cancel other work, which then must not be found half gone.
    Wakeups wakeups;
    wakeups.swap(*wakeups_);
    for (auto& [key, wakeup] : wakeups) {
      if (wakeup.item) WorkItem(wakeup.item).cancel();
    }
  }
}

}  // namespace velto
