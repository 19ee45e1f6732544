#include <algorithm>
#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/headless/HeadlessPlatform.h"
#include "platform/ui/Animator.h"

namespace velto {
namespace {

using ::testing::ElementsAre;
using ::testing::Gt;
using ::testing::IsEmpty;
using ::testing::Lt;
using ::testing::SizeIs;

class AnimatorTest : public testing::Test {
 protected:
  [[nodiscard]] Animation run(double seconds, Animator::Curve curve = Animator::Curve::linear) {
    return animator.animate(
        seconds, curve, [this](double progress) { steps.push_back(progress); }, [this] { ++finished; });
  }
  HeadlessPlatform headless;
  Animator animator{headless.loop(), headless.loop(), headless.windowSystem()};
  std::vector<double> steps;
  int finished = 0;
};

TEST_F(AnimatorTest, StepsOncePerFrameToExactlyOne) {
  const Animation animation = run(0.1);
  EXPECT_THAT(steps, IsEmpty());
  headless.advance(0.055);
  EXPECT_THAT(steps, SizeIs(3));
  EXPECT_NEAR(steps.back(), 0.5, 0.01);
  EXPECT_TRUE(animation.isRunning());
  headless.advance(1);
  EXPECT_THAT(steps, SizeIs(::testing::Le(7U)));
  EXPECT_EQ(steps.back(), 1);
  EXPECT_EQ(finished, 1);
  EXPECT_FALSE(animation.isRunning());
  EXPECT_TRUE(std::is_sorted(steps.begin(), steps.end()));
}

TEST_F(AnimatorTest, EasesInAndOut) {
  const Animation animation = run(0.3, Animator::Curve::easeInOut);
  headless.advance(0.06);
  EXPECT_THAT(steps.back(), Lt(0.15));
  headless.advance(0.18);
  EXPECT_THAT(steps.back(), Gt(0.85));
}

TEST_F(AnimatorTest, LessMotionOrNoTimeIsAtOnce) {
  EXPECT_FALSE(run(0).isRunning());
  headless.windowSystem().setPrefersReducedMotion(true);
  EXPECT_FALSE(run(1).isRunning());
  EXPECT_THAT(steps, ElementsAre(1, 1));
  EXPECT_EQ(finished, 2);
}

TEST_F(AnimatorTest, EndsWhereItIsWhenItIsDroppedOrReplaced) {
  auto animation = std::make_unique<Animation>(run(0.1));
  headless.advance(0.055);
  *animation = run(0.1);
  headless.advance(0.055);
  animation.reset();
  headless.advance(1);
  EXPECT_THAT(steps, SizeIs(6));
  EXPECT_EQ(finished, 0);
}

TEST_F(AnimatorTest, ItsEndMayBeTheEndOfItsOwner) {
  auto animation = std::make_unique<Animation>();
  *animation = animator.animate(
      0.1, Animator::Curve::linear, [](double) {}, [&] { animation.reset(); });
  headless.advance(1);
  EXPECT_EQ(animation, nullptr);
}

}  // namespace
}  // namespace velto
