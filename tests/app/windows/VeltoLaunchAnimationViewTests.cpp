#include <memory>

#include <gtest/gtest.h>

#include "app/windows/VeltoLaunchAnimationView.h"
#include "platform/headless/HeadlessPlatform.h"

namespace velto {
namespace {

/// A window whose content is empty.
class LaunchAnimationTest : public ::testing::Test {
 protected:
  LaunchAnimationTest() : window_(headless_.application(), {{0, 0}, {300, 200}}, style_mask::kTitled) {
    window_.setContentView(std::make_unique<View>());
  }

  VeltoLaunchAnimationView& add() {
    return window_.contentView()->addSubview(
        std::make_unique<VeltoLaunchAnimationView>(headless_.loop(), headless_.loop()));
  }

  HeadlessPlatform headless_;
  Window window_;
};

TEST_F(LaunchAnimationTest, runsForASecondAndAHalf) {
  VeltoLaunchAnimationView& view = add();
  EXPECT_EQ(view.phase(), 0);
  headless_.advance(0.5);
  EXPECT_NEAR(view.phase(), 1.0 / 3, 0.012) << "within a frame";
  headless_.loop().jump(5);
  headless_.advance();
  EXPECT_EQ(view.phase(), 1);
  EXPECT_FALSE(view.isAnimating());
  EXPECT_EQ(headless_.loop().runningTimers(), 0U) << "a finished animation wakes nobody up";
}

TEST_F(LaunchAnimationTest, leavingTheWindowStopsItForGood) {
  VeltoLaunchAnimationView& view = add();
  headless_.advance(0.5);
  auto removed = view.removeFromSuperview();
  EXPECT_EQ(headless_.loop().runningTimers(), 0U);
  const double phase = view.phase();
  window_.contentView()->addSubview(std::move(removed));
  headless_.advance(2);
  EXPECT_EQ(view.phase(), phase) << "it runs only once";

  add().removeFromSuperview();
  EXPECT_EQ(headless_.loop().runningTimers(), 0U) << "its end stops its timer";
  headless_.advance(2);
}

TEST_F(LaunchAnimationTest, withReducedMotionItIsThereAtOnce) {
  headless_.windowSystem().setPrefersReducedMotion(true);
  const VeltoLaunchAnimationView& view = add();
  EXPECT_EQ(view.phase(), 1);
  EXPECT_FALSE(view.isAnimating());
}

}  // namespace
}  // namespace velto
