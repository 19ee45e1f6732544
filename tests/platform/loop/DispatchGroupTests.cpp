#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/VirtualLoop.h"
#include "platform/loop/DispatchGroup.h"

namespace velto {
namespace {

TEST(DispatchGroup, NotifiesThroughTheQueueWhenAllHaveLeft) {
  VirtualLoop loop;
  std::vector<std::string> log;
  DispatchGroup group(loop);
  group.enter();
  group.enter();
  group.notify([&] { log.emplace_back("first"); });
  group.notify([&] { log.emplace_back("second"); });
  group.leave();
  loop.drain();
  EXPECT_TRUE(log.empty());
  group.leave();
  EXPECT_TRUE(log.empty());
  loop.drain();
  EXPECT_EQ(log, (std::vector<std::string>{"first", "second"}));
}

TEST(DispatchGroup, AnEmptyGroupNotifiesNowButNeverInline) {
  VirtualLoop loop;
  bool notified = false;
  DispatchGroup(loop).notify([&] { notified = true; });
  EXPECT_FALSE(notified);
  loop.drain();
  EXPECT_TRUE(notified);
}

TEST(DispatchGroup, CopiesShareTheCountAndTheGroupMayBeUsedAgain) {
  VirtualLoop loop;
  int notified = 0;
  DispatchGroup group(loop);
  for (int round = 1; round <= 2; ++round) {
    group.enter();
    group.notify([&] { ++notified; });
    loop.async([copy = group]() mutable { copy.leave(); });
    loop.drain();
    EXPECT_EQ(notified, round);
  }
}

}  // namespace
}  // namespace velto
