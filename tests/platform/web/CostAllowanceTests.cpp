#include <gtest/gtest.h>

#include "platform/web/CostAllowance.h"

namespace velto {
namespace {

TEST(CostAllowance, ComesBackSlowlyAndNeverAboveItsCapacity) {
  CostAllowance allowance(0.1, 0.05);
  EXPECT_TRUE(allowance.spend(0.08, {100}));
  EXPECT_FALSE(allowance.isHalf({100}));
  EXPECT_TRUE(allowance.isHalf({101}));
  EXPECT_DOUBLE_EQ(allowance.left({500}), 0.1);
  // More than there is, at once: owed.
  EXPECT_FALSE(allowance.spend(1.1, {500}));
  EXPECT_DOUBLE_EQ(allowance.secondsUntilFull({500}), 22);
  EXPECT_FALSE(allowance.spend(0, {519}));
  EXPECT_TRUE(allowance.spend(0, {521}));
  EXPECT_DOUBLE_EQ(allowance.secondsUntilFull({600}), 0);
}

}  // namespace
}  // namespace velto
