#include <algorithm>
#include <memory>

#include <cairomm/surface.h>
#include <gtest/gtest.h>

#include "app/windows/VeltoLaunchAnimationView.h"
#include "platform/headless/HeadlessPlatform.h"

namespace velto {
namespace {

/// A window whose content is empty, and a view that is not in it yet.
class LaunchAnimationTest : public ::testing::Test {
 protected:
  LaunchAnimationTest() : window_(headless_.application(), {{0, 0}, {300, 200}}, style_mask::kTitled) {
    window_.setContentView(std::make_unique<View>());
  }

  VeltoLaunchAnimationView& add() { return add(make()); }
  VeltoLaunchAnimationView& add(std::unique_ptr<View> view) {
    return dynamic_cast<VeltoLaunchAnimationView&>(window_.contentView()->addSubview(std::move(view)));
  }
  [[nodiscard]] std::unique_ptr<VeltoLaunchAnimationView> make() {
    return std::make_unique<VeltoLaunchAnimationView>(headless_.loop(), headless_.loop());
  }

  HeadlessPlatform headless_;
  Window window_;
};

TEST_F(LaunchAnimationTest, standsReady) {
  const auto view = make();
  EXPECT_EQ(view->frame().size, (Size{92, 92}));
  EXPECT_EQ(view->identifier(), "velto-launch-animation");
  EXPECT_EQ(view->accessibilityLabel(), "Velto launch animation");
  EXPECT_EQ(view->phase(), 0);
  EXPECT_FALSE(view->hasAnimated());
  headless_.advance(2);
  EXPECT_EQ(view->phase(), 0);
}

TEST_F(LaunchAnimationTest, runsForASecondAndAHalf) {
  VeltoLaunchAnimationView& view = add();
  EXPECT_TRUE(view.hasAnimated());
  EXPECT_TRUE(view.isAnimating());
  EXPECT_EQ(view.phase(), 0);
  const struct { double step, phase; } cases[] = {{0.5, 1.0 / 3}, {0.25, 0.5}, {0.6, 0.9}};
  for (const auto& c : cases) {
    headless_.advance(c.step);
    EXPECT_NEAR(view.phase(), c.phase, 0.012) << "within a frame";
    EXPECT_TRUE(view.isAnimating());
  }
  headless_.advance(0.2);
  EXPECT_EQ(view.phase(), 1);
  EXPECT_FALSE(view.isAnimating());
  EXPECT_EQ(headless_.loop().runningTimers(), 0U) << "a finished animation wakes nobody up";
}

TEST_F(LaunchAnimationTest, missedFramesAreNotMadeUpFor) {
  VeltoLaunchAnimationView& view = add();
  headless_.loop().jump(5);
  headless_.advance();
  EXPECT_EQ(view.phase(), 1);
  EXPECT_FALSE(view.isAnimating());
}

TEST_F(LaunchAnimationTest, runsOnlyOnce) {
  VeltoLaunchAnimationView& view = add();
  headless_.advance(2);
  add(view.removeFromSuperview());
  EXPECT_FALSE(view.isAnimating());
  EXPECT_EQ(view.phase(), 1);
}

TEST_F(LaunchAnimationTest, leavingTheWindowStopsIt) {
  VeltoLaunchAnimationView& view = add();
  headless_.advance(0.5);
  const auto removed = view.removeFromSuperview();
  EXPECT_EQ(headless_.loop().runningTimers(), 0U);
  const double phase = view.phase();
  headless_.advance(2);
  EXPECT_EQ(view.phase(), phase);
}

TEST_F(LaunchAnimationTest, itsEndStopsItsTimer) {
  add().removeFromSuperview();
  EXPECT_EQ(headless_.loop().runningTimers(), 0U);
  headless_.advance(2);
}

TEST_F(LaunchAnimationTest, withReducedMotionItIsThereAtOnce) {
  headless_.windowSystem().setPrefersReducedMotion(true);
  const VeltoLaunchAnimationView& view = add();
  EXPECT_EQ(view.phase(), 1);
  EXPECT_TRUE(view.hasAnimated());
  EXPECT_FALSE(view.isAnimating());
}

/// How many pixels of the drawn view are not transparent.
long paintedPixels(View& view) {
  const auto surface = Cairo::ImageSurface::create(Cairo::FORMAT_ARGB32, 92, 92);
  view.render(Cairo::Context::create(surface));
  surface->flush();
  const unsigned char* bytes = surface->get_data();
  long painted = 0;
  for (int y = 0; y < 92; ++y) {
    for (int x = 0; x < 92; ++x) painted += bytes[y * surface->get_stride() + x * 4 + 3] != 0 ? 1 : 0;
  }
  return painted;
}

TEST_F(LaunchAnimationTest, drawsMoreAndMore) {
  VeltoLaunchAnimationView& view = add();
  EXPECT_EQ(paintedPixels(view), 0);
  headless_.advance(0.3);
  const long early = paintedPixels(view);
  EXPECT_GT(early, 100);
  headless_.advance(2);
  EXPECT_GT(paintedPixels(view), early);
  EXPECT_LT(paintedPixels(view), 92 * 92);
}

}  // namespace
}  // namespace velto
