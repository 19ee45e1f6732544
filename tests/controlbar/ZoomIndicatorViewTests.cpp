#include <memory>

#include <gtest/gtest.h>

#include "controlbar/ZoomIndicatorView.h"
#include "platform/headless/HeadlessPlatform.h"

namespace velto {
namespace {

class ZoomIndicator : public testing::Test {
 protected:
  ZoomIndicator()
      : badge(container.addSubview(std::make_unique<ZoomIndicatorView>(
            Rect{{228, 12}, {60, 28}}, Animator(headless.loop(), headless.loop(), headless.windowSystem()),
            headless.loop()))),
        label(*firstSubview<Label>(badge)) {}
  /// Whether a press in the middle of the badge is the badge's and not what lies below.
  [[nodiscard]] bool takesPointer() {
    return container.hitTest({badge.frame().midX(), badge.frame().midY()}) == &badge;
  }

  HeadlessPlatform headless;
  View container{Rect{{0, 0}, {300, 200}}};
  ZoomIndicatorView& badge;
  Label& label;
};

TEST_F(ZoomIndicator, tellsWholePercentsAtTheLowerRight) {
  const struct {
    double zoom;
    const char* text;
  } cases[] = {{1.234, "123%"}, {0.675, "68%"}};
  for (const auto& c : cases) {
    badge.show(c.zoom);
    EXPECT_EQ(label.text(), c.text);
    const double width = label.fittingSize().width + 32;
    EXPECT_EQ(badge.frame(), (Rect{{300 - width - 12, 12}, {width, 28}})) << c.text;
    EXPECT_EQ(label.frame(), badge.bounds()) << c.text;
  }
}

TEST_F(ZoomIndicator, comesStaysAndGoes) {
  const struct {
    const char* what;
    double step;
    double alpha;
    double within;
    bool takesPointer;
  } steps[] = {
      {"at once", 0, 0, 0, false},       {"there", 0.175, 1, 0, true},
      {"going", 1.975, 0.5, 0.15, true}, {"hardly to be seen", 0.11, 0.05, 0.05, false},
      {"gone", 0.06, 0, 0, false},
  };
  EXPECT_EQ(badge.alpha(), 0);
  EXPECT_FALSE(takesPointer());
  badge.show(1.5);
  for (const auto& s : steps) {
    headless.advance(s.step);
    EXPECT_NEAR(badge.alpha(), s.alpha, s.within) << s.what;
    EXPECT_EQ(takesPointer(), s.takesPointer) << s.what << " " << badge.alpha();
  }
  EXPECT_TRUE(headless.loop().isIdle());
}

TEST_F(ZoomIndicator, showingAgainStartsTheWaitAgain) {
  badge.show(1.5);
  headless.advance(1.9);
  badge.show(1.6);
  EXPECT_EQ(badge.alpha(), 1) << "it does not blink";
  headless.advance(1.9);
  EXPECT_EQ(badge.alpha(), 1);
  headless.advance(0.2);
  const double going = badge.alpha();
  EXPECT_LT(going, 1);
  badge.show(1.7);
  EXPECT_EQ(badge.alpha(), going) << "it comes back from where it is";
  headless.advance(0.2);
  EXPECT_EQ(badge.alpha(), 1);
  badge.removeFromSuperview();
  EXPECT_TRUE(headless.loop().isIdle()) << "nothing is left behind";
}

}  // namespace
}  // namespace velto
