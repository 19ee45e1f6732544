#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/VirtualLoop.h"

namespace velto {
namespace {

TEST(VirtualLoop, EmptiesTheQueueBetweenDueWorkWithTheClockAtTheDueTime) {
  VirtualLoop loop;
  std::vector<double> times;
  const auto noteTime = [&] { times.push_back(loop.uptime().seconds); };
  loop.after(1, [&] {
    loop.async(noteTime);
    loop.async([&] { loop.async(noteTime); });
    loop.after(0.5, noteTime);
  });
  loop.after(3, noteTime);
  loop.advance(3);
  EXPECT_EQ(times, (std::vector<double>{1001, 1001, 1001.5, 1003}));
  loop.after(0, noteTime);
  loop.drain();
  EXPECT_EQ(times.size(), 4U) << "what is due waits for the time to go on";
}

TEST(VirtualLoop, IsIdleWhenNothingIsQueuedToComeOrTicking) {
  VirtualLoop loop;
  EXPECT_TRUE(loop.isIdle());
  WorkItem item = loop.after(1, [] {});
  Timer timer = loop.every(1, [] {});
  loop.async([] {});
  EXPECT_EQ(loop.queuedTasks(), 1U);
  EXPECT_EQ(loop.pendingWorkItems(), 1U);
  EXPECT_EQ(loop.runningTimers(), 1U);
  item.cancel();
  timer.stop();
  EXPECT_FALSE(loop.isIdle());
  loop.drain();
  EXPECT_TRUE(loop.isIdle());
  timer = loop.every(1, [] {});
  EXPECT_FALSE(loop.isIdle());
}

TEST(VirtualLoop, ItemsAndTimersMayOutliveIt) {
  auto loop = std::make_unique<VirtualLoop>();
  const auto captured = std::make_shared<int>();
  WorkItem item = loop->after(1, [captured] {});
  Timer timer = loop->every(1, [captured] {});
  loop->async([captured] {});
  loop.reset();
  EXPECT_EQ(captured.use_count(), 1);
  item.cancel();
  timer.stop();
}

TEST(VirtualLoop, DiscardingDropsWhatTheDroppedWorkQueues) {
  VirtualLoop loop;
  struct QueuesWhenFreed {
    VirtualLoop& loop;
    WorkItem other;
    ~QueuesWhenFreed() {
      other.cancel();
      loop.async([] { FAIL() << "dropped work ran"; });
    }
  };
  const WorkItem other = loop.after(2, [] {});
  auto captured = std::shared_ptr<QueuesWhenFreed>(new QueuesWhenFreed{loop, other});
  loop.after(1, [captured = std::move(captured)] {});
  loop.discardAll();
  EXPECT_TRUE(loop.isIdle());
  loop.advance(3);
}

}  // namespace
}  // namespace velto
