#include <string>

#include <gtest/gtest.h>

#include "platform/foundation/NotificationCenter.h"

namespace velto {
namespace {

class NotificationCenterTest : public testing::Test {
 protected:
  Subscription record(std::string_view name, char mark) {
    return center_.observe(name, [this, mark] { calls_ += mark; });
  }

  NotificationCenter center_;
  std::string calls_;
};

TEST_F(NotificationCenterTest, CallsInTheOrderOfAddingUntilTheSubscriptionEnds) {
  Subscription a = record("n", 'a');
  const Subscription other = record("m", 'x');
  {
    const Subscription b = record("n", 'b');
    const Subscription moved = std::move(a);
    a = record("n", 'c');
    center_.post("n");
  }
  center_.post("n");
  a = Subscription();
  center_.post("n");
  EXPECT_EQ(calls_, "abcc");
}

TEST_F(NotificationCenterTest, OneAddedMeanwhileWaitsForTheNextPost) {
  Subscription added;
  const Subscription first = center_.observe("n", [&] {
    calls_ += 'a';
    if (calls_ == "a") added = record("n", 'b');
  });
  center_.post("n");
  EXPECT_EQ(calls_, "a");
  center_.post("n");
  EXPECT_EQ(calls_, "aab");
}

TEST_F(NotificationCenterTest, OneRemovedMeanwhileIsNotCalled) {
  Subscription self;
  Subscription second;
  self = center_.observe("n", [&, kept = std::string("a long text that the observer itself owns")] {
    second.reset();
    self.reset();
    calls_ += kept.front();
  });
  second = record("n", 'b');
  const Subscription third = record("n", 'c');
  center_.post("n");
  center_.post("n");
  EXPECT_EQ(calls_, "acc");
}

TEST(NotificationCenterLife, SubscriptionsOutliveTheCenter) {
  auto center = std::make_unique<NotificationCenter>();
  int calls = 0;
  const Subscription first = center->observe("n", [&] { center.reset(); });
  const Subscription second = center->observe("n", [&] { ++calls; });
  center->post("n");
  EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace velto
