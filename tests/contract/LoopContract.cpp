#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/loop/DispatchGroup.h"
#include "tests/contract/ContractPlatform.h"

namespace velto {
namespace {

using ::testing::ElementsAre;

class LoopContract : public testing::Test {
 protected:
  MainQueue& queue() { return contract.platform().mainQueue; }
  double uptime() { return contract.platform().clock.uptime().seconds; }
  /// Work that leaves its name.
  std::function<void()> note(std::string name) {
    return [this, name = std::move(name)] { log.push_back(name); };
  }
  bool runUntilLogged(std::size_t count) {
    return contract.runUntil([this, count] { return log.size() >= count; });
  }

  test::ContractPlatform contract;
  std::vector<std::string> log;
};

TEST_F(LoopContract, QueuedWorkRunsInOrderAndNeverInline) {
  queue().async([this] {
    queue().async(note("queued by a"));
    log.push_back("a");
  });
  queue().async(note("b"));
  EXPECT_TRUE(log.empty());
  ASSERT_TRUE(runUntilLogged(3));
  EXPECT_THAT(log, ElementsAre("a", "b", "queued by a"));
}

TEST_F(LoopContract, WorkOfAnotherThreadArrivesInItsOrder) {
  constexpr int kCount = 500;
  std::vector<int> arrived;
  std::thread other([&] {
    for (int i = 0; i < kCount; ++i) queue().async([&arrived, i] { arrived.push_back(i); });
  });
  other.join();
  ASSERT_TRUE(contract.runUntil([&] { return arrived.size() == kCount; }));
  EXPECT_TRUE(std::is_sorted(arrived.begin(), arrived.end()));
}

TEST_F(LoopContract, DelayedWorkRunsInOrderOfDueTime) {
  queue().after(0.03, note("30"));
  queue().after(0.01, note("10, first"));
  queue().after(0.02, note("20"));
  queue().after(0.01, note("10, second"));
  contract.beBusy(0.05);
  ASSERT_TRUE(runUntilLogged(4));
  EXPECT_THAT(log, ElementsAre("10, first", "10, second", "20", "30"));
}

TEST_F(LoopContract, DelayedWorkIsNeverEarlyAndNeedsNobodyToHoldIt) {
  const double start = uptime();
  double ran = 0;
  queue().after(0.05, [&] { ran = uptime(); });
  ASSERT_TRUE(contract.runUntil([&] { return ran > 0; }));
  EXPECT_GE(ran - start, 0.05 - 1e-6);
}

TEST_F(LoopContract, WhatIsQueuedComesBeforeWhatIsDue) {
  queue().async(note("queued before"));
  queue().after(-1, [this] {
    log.push_back("due first");
    queue().async(note("queued by it"));
  });
  queue().after(0, note("due second"));
  contract.beBusy(0.01);
  ASSERT_TRUE(runUntilLogged(4));
  EXPECT_THAT(log, ElementsAre("queued before", "due first", "queued by it", "due second"));
}

TEST_F(LoopContract, CancelledWorkNeverRunsAndItsCapturesAreFreedAtOnce) {
  auto captured = std::make_shared<int>(1);
  WorkItem item = queue().after(0.01, [captured, this] { log.push_back("cancelled"); });
  WorkItem copy = item;
  EXPECT_TRUE(item.isPending());
  copy.cancel();
  EXPECT_FALSE(item.isPending());
  EXPECT_EQ(captured.use_count(), 1);
  item.cancel();
  contract.letPass(0.05);
  EXPECT_TRUE(log.empty());
}

TEST_F(LoopContract, WorkMayCancelItselfAndWhatIsDueAtTheSameTime) {
  WorkItem first;
  WorkItem second;
  first = queue().after(0.01, [&] {
    EXPECT_FALSE(first.isPending());
    first.cancel();
    second.cancel();
    log.push_back("first");
  });
  second = queue().after(0.01, note("second"));
  queue().after(0.02, note("third"));
  contract.beBusy(0.05);
  ASSERT_TRUE(runUntilLogged(2));
  EXPECT_THAT(log, ElementsAre("first", "third"));
}

TEST_F(LoopContract, CancellingMayFreeTheOneThatHoldsIt) {
  struct Owner {
    WorkItem item;
  };
  auto owner = std::make_shared<Owner>();
  const std::weak_ptr<Owner> weak = owner;
  Owner& held = *owner;
  held.item = queue().after(0.01, [owner = std::move(owner)] {});
  held.item.cancel();
  EXPECT_TRUE(weak.expired());
}

TEST_F(LoopContract, TimerRepeatsUntilItIsReplacedOrStoppedFromWithin) {
  auto captured = std::make_shared<int>(0);
  Timer timer;
  timer = queue().every(0.01, [&, captured] {
    if (++*captured < 3) return;
    timer = queue().every(0.01, [&timer, captured] {
      if (++*captured == 6) timer.stop();
    });
  });
  ASSERT_TRUE(contract.runUntil([&] { return *captured == 6; }));
  EXPECT_FALSE(timer.isRunning());
  contract.letPass(0.05);
  EXPECT_EQ(*captured, 6);
  EXPECT_EQ(captured.use_count(), 1);
}

TEST_F(LoopContract, TimerEndsWithItsObject) {
  auto fired = std::make_shared<int>(0);
  {
    const Timer timer = queue().every(0.01, [fired] { ++*fired; });
    ASSERT_TRUE(contract.runUntil([&] { return *fired > 0; }));
  }
  EXPECT_EQ(fired.use_count(), 1);
}

TEST_F(LoopContract, TimerKeepsToItsGridAndMissedFiresCollapse) {
  constexpr double kInterval = 0.04;
  std::vector<double> fires;
  const double start = uptime();
  const Timer timer = queue().every(kInterval, [&] {
    fires.push_back(uptime() - start);
    if (fires.size() == 1) contract.beBusy(5.5 * kInterval);
  });
  ASSERT_TRUE(contract.runUntil([&] { return fires.size() >= 3; }));
  // Busy from the first fire on: five were missed, of which one is made up for, and then the grid goes on.
  EXPECT_GE(fires[0], kInterval - 1e-6);
  EXPECT_GE(fires[1], 6.5 * kInterval - 1e-6);
  EXPECT_GE(fires[2], 7 * kInterval - 1e-6);
}

TEST_F(LoopContract, GroupNotifiesWhenAllHaveLeft) {
  DispatchGroup group(queue());
  group.notify(note("nothing entered"));
  EXPECT_TRUE(log.empty());
  ASSERT_TRUE(runUntilLogged(1));
  group.enter();
  group.enter();
  group.notify(note("first"));
  group.notify(note("second"));
  group.leave();
  contract.letPass(0.02);
  EXPECT_THAT(log, ElementsAre("nothing entered"));
  queue().after(0.01, [this, group]() mutable {
    group.leave();
    EXPECT_EQ(log.size(), 1U) << "never from within the call";
  });
  ASSERT_TRUE(runUntilLogged(3));
  EXPECT_THAT(log, ElementsAre("nothing entered", "first", "second"));
}

}  // namespace
}  // namespace velto
