#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/VirtualLoop.h"
#include "platform/loop/MainQueue.h"

namespace velto {
namespace {

TEST(WorkItem, IsPendingUntilItStartsOrIsCancelled) {
  VirtualLoop loop;
  EXPECT_FALSE(WorkItem().isPending());
  bool pendingInside = true;
  WorkItem item;
  item = loop.after(1, [&] { pendingInside = item.isPending(); });
  EXPECT_TRUE(item.isPending());
  loop.advance(1);
  EXPECT_FALSE(pendingInside);
  EXPECT_FALSE(item.isPending());
}

TEST(WorkItem, CancelFreesTheCapturesAtOnceAndCopiesKnow) {
  VirtualLoop loop;
  const auto captured = std::make_shared<int>();
  WorkItem item = loop.after(1, [captured] { FAIL() << "cancelled work ran"; });
  WorkItem copy = item;
  copy.cancel();
  EXPECT_EQ(captured.use_count(), 1);
  EXPECT_FALSE(item.isPending());
  item.cancel();
  loop.advance(2);
}

TEST(WorkItem, DroppingItDoesNotCancel) {
  VirtualLoop loop;
  int runs = 0;
  {
    const WorkItem dropped = loop.after(1, [&] { ++runs; });
  }
  loop.advance(5);
  EXPECT_EQ(runs, 1);
}

TEST(WorkItem, MayCancelItselfAndOthersThatAreDueAtTheSameTime) {
  VirtualLoop loop;
  int runs = 0;
  WorkItem first;
  WorkItem second;
  first = loop.after(1, [&] {
    ++runs;
    first.cancel();
    second.cancel();
  });
  second = loop.after(1, [&] { ++runs; });
  loop.advance(1);
  EXPECT_EQ(runs, 1);
}

TEST(WorkItem, CancellingMayFreeTheOneThatHoldsIt) {
  struct Owner {
    WorkItem item;
  };
  VirtualLoop loop;
  auto owner = std::make_shared<Owner>();
  Owner& held = *owner;
  held.item = loop.after(1, [owner = std::move(owner)] {});
  held.item.cancel();
  EXPECT_TRUE(loop.isIdle());
}

TEST(WorkItem, ADelayThatIsNoneRunsAfterWhatIsQueued) {
  VirtualLoop loop;
  std::vector<std::string> log;
  loop.after(-3, [&] { log.emplace_back("item"); });
  loop.async([&] { log.emplace_back("queued"); });
  loop.advance(0);
  EXPECT_EQ(log, (std::vector<std::string>{"queued", "item"}));
}

TEST(Timer, RunsForAsLongAsItsObjectLives) {
  VirtualLoop loop;
  int fires = 0;
  {
    Timer timer = loop.every(1, [&] { ++fires; });
    Timer moved = std::move(timer);
    EXPECT_TRUE(moved.isRunning());
    loop.advance(2);
    moved = loop.every(10, [] {});
    loop.advance(2);
  }
  EXPECT_EQ(fires, 2);
  EXPECT_TRUE(loop.isIdle());
}

}  // namespace
}  // namespace velto
