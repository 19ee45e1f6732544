#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/HeadlessBackgroundQueue.h"
#include "platform/headless/VirtualLoop.h"

namespace velto {
namespace {

class VirtualLoopTest : public testing::Test {
 protected:
  Task note(const std::string& what) {
    return [this, what] { log.push_back(what); };
  }
  Task noteTime() {
    return [this] { times.push_back(loop.uptime().seconds); };
  }
  VirtualLoop loop;
  std::vector<std::string> log;
  std::vector<double> times;
};

using Log = std::vector<std::string>;
using Times = std::vector<double>;

TEST_F(VirtualLoopTest, StartsAtItsTwoTimesAndMovesBothTogether) {
  EXPECT_EQ(loop.uptime().seconds, 1000);
  EXPECT_EQ(loop.now(), parseIso8601("2024-01-02T03:04:05Z"));
  loop.advance(1.5);
  EXPECT_EQ(loop.uptime().seconds, 1001.5);
  EXPECT_EQ(formatIso8601(loop.now()), "2024-01-02T03:04:06Z");
}

TEST_F(VirtualLoopTest, SettingTheWallClockLeavesUptimeAndDeadlinesAlone) {
  loop.after(2, note("two"));
  loop.setWallTime({0});
  loop.advance(1);
  EXPECT_EQ(loop.now().secondsSince1970, 1);
  EXPECT_TRUE(log.empty());
  loop.advance(1);
  EXPECT_EQ(log, Log{"two"});
}

TEST_F(VirtualLoopTest, WorkQueuedByWorkWaitsForTheNextTurn) {
  loop.async([this] {
    log.push_back("a");
    loop.async(note("c"));
  });
  loop.async(note("b"));
  EXPECT_TRUE(loop.runTurn());
  EXPECT_EQ(log, (Log{"a", "b"}));
  EXPECT_TRUE(loop.runTurn());
  EXPECT_EQ(log, (Log{"a", "b", "c"}));
  EXPECT_FALSE(loop.runTurn());
}

TEST_F(VirtualLoopTest, WorkThatThrowsLeavesTheRestInTheQueue) {
  loop.async([] { throw std::logic_error("wrong"); });
  loop.async(note("next"));
  EXPECT_THROW(loop.drain(), std::logic_error);
  loop.drain();
  EXPECT_EQ(log, Log{"next"});
}

TEST_F(VirtualLoopTest, RunsInOrderOfDueTimeThenOfScheduling) {
  loop.after(2, note("2 first"));
  loop.after(1, note("1"));
  loop.after(2, note("2 second"));
  loop.after(0, note("0"));
  loop.async(note("queued"));
  loop.advance(2);
  EXPECT_EQ(log, (Log{"queued", "0", "1", "2 first", "2 second"}));
}

TEST_F(VirtualLoopTest, EmptiesTheQueueBetweenDueWorkWithTheClockAtTheDueTime) {
  loop.after(1, [this] {
    loop.async(noteTime());
    loop.async([this] { loop.async(noteTime()); });
    loop.after(0.5, noteTime());
  });
  loop.after(3, noteTime());
  loop.advance(3);
  EXPECT_EQ(times, (Times{1001, 1001, 1001.5, 1003}));
  EXPECT_EQ(loop.uptime().seconds, 1003);
}

TEST_F(VirtualLoopTest, DrainLeavesWhatIsDueForAdvance) {
  loop.after(0, note("due"));
  loop.drain();
  EXPECT_TRUE(log.empty());
  loop.advance(0);
  EXPECT_EQ(log, Log{"due"});
}

TEST_F(VirtualLoopTest, ManySmallStepsReachTheSameDeadline) {
  loop.after(1, note("due"));
  for (int i = 0; i < 10; ++i) loop.advance(0.1);
  EXPECT_EQ(log, Log{"due"});
}

TEST_F(VirtualLoopTest, WhatBecameDueInAJumpRunsAtTheNextAdvanceAtTheTimeOfThen) {
  loop.after(2, noteTime());
  loop.after(1, noteTime());
  loop.jump(10);
  EXPECT_TRUE(times.empty());
  loop.advance(0);
  EXPECT_EQ(times, (Times{1010, 1010}));
}

TEST_F(VirtualLoopTest, TimersKeepToTheGridOfTheirStart) {
  loop.advance(0.25);
  const Timer timer = loop.every(1, [this] {
    times.push_back(loop.uptime().seconds);
    loop.jump(0.4);
  });
  loop.advance(3.5);
  EXPECT_EQ(times, (Times{1001.25, 1002.25, 1003.25}));
}

TEST_F(VirtualLoopTest, MissedFiresCollapseIntoOne) {
  const Timer timer = loop.every(1, [this] { times.push_back(loop.uptime().seconds); });
  loop.jump(3.5);
  loop.advance(1);
  EXPECT_EQ(times, (Times{1003.5, 1004}));
}

TEST_F(VirtualLoopTest, FiresMissedDuringTheTimersOwnWorkCollapseToo) {
  const Timer timer = loop.every(1, [this] {
    times.push_back(loop.uptime().seconds);
    if (times.size() == 1) loop.jump(2.5);
  });
  loop.advance(5);
  EXPECT_EQ(times, (Times{1001, 1003.5, 1004, 1005}));
}

TEST_F(VirtualLoopTest, TinyIntervalsCountAsAMillisecond) {
  for (const double interval : {0.0, -1.0, 0.0001}) {
    int fires = 0;
    const Timer timer = loop.every(interval, [&fires] { ++fires; });
    loop.advance(0.005);
    EXPECT_EQ(fires, 5) << interval;
  }
}

TEST_F(VirtualLoopTest, ATimerMayStopOrReplaceItselfInItsOwnWork) {
  Timer timer;
  timer = loop.every(1, [&] {
    log.emplace_back("first");
    timer = loop.every(2, [&] {
      log.emplace_back("second");
      timer.stop();
    });
  });
  loop.advance(10);
  EXPECT_EQ(log, (Log{"first", "second"}));
  EXPECT_FALSE(timer.isRunning());
  EXPECT_TRUE(loop.isIdle());
}

TEST_F(VirtualLoopTest, CountsWhatIsToComeAndWhatTicks) {
  EXPECT_TRUE(loop.isIdle());
  WorkItem item = loop.after(1, note("item"));
  Timer timer = loop.every(1, [] {});
  loop.async(note("task"));
  EXPECT_EQ(loop.queuedTasks(), 1U);
  EXPECT_EQ(loop.pendingWorkItems(), 1U);
  EXPECT_EQ(loop.runningTimers(), 1U);
  loop.drain();
  item.cancel();
  EXPECT_EQ(loop.pendingWorkItems(), 0U);
  EXPECT_FALSE(loop.isIdle());
  timer.stop();
  EXPECT_TRUE(loop.isIdle());
}

TEST_F(VirtualLoopTest, WorkThatNeverRestsIsReported) {
  std::function<void()> again = [&] { loop.async([&] { again(); }); };
  again();
  EXPECT_THROW(loop.drain(), std::runtime_error);
  again = [&] { loop.after(0, [&] { again(); }); };
  again();
  EXPECT_THROW(loop.advance(1), std::runtime_error);
}

TEST_F(VirtualLoopTest, TakesWorkFromOtherThreads) {
  constexpr int kEach = 500;
  int ran = 0;
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 3; ++i) {
      threads.emplace_back([&] {
        for (int n = 0; n < kEach; ++n) loop.async([&ran] { ++ran; });
      });
    }
  }
  loop.drain();
  EXPECT_EQ(ran, 3 * kEach);
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

TEST(HeadlessBackgroundQueue, RunsAtOnceOrWhenTold) {
  HeadlessBackgroundQueue queue;
  Log log;
  const auto add = [&](const std::string& name) { queue.async([&log, name] { log.push_back(name); }); };
  add("at once");
  queue.hold(true);
  add("first");
  queue.async([&] {
    log.emplace_back("second");
    add("added meanwhile");
  });
  EXPECT_EQ(log, Log{"at once"});
  EXPECT_TRUE(queue.runOne());
  EXPECT_EQ(log.back(), "first");
  queue.runAll();
  EXPECT_EQ(log, (Log{"at once", "first", "second", "added meanwhile"}));
  EXPECT_FALSE(queue.runOne());
}

}  // namespace
}  // namespace velto
