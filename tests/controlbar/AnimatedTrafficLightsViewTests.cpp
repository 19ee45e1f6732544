#include <memory>

#include <gtest/gtest.h>

#include "controlbar/AnimatedTrafficLightsView.h"
#include "platform/headless/HeadlessPlatform.h"

namespace velto {
namespace {

constexpr const char* kDots[] = {"hovrel-close-dot", "hovrel-minimise-dot", "hovrel-zoom-dot"};

class TrafficLights : public testing::Test {
 protected:
  TrafficLights() {
    window->setContentView(std::make_unique<View>());
    lights = &window->contentView()->addSubview(std::make_unique<AnimatedTrafficLightsView>(
        Rect{{12, 180}, {58, 12}}, *window,
        Animator(headless.loop(), headless.loop(), headless.windowSystem())));
    window->orderFrontRegardless();
  }
  void enter() { input.moveMouse(*window, {40, 186}); }
  void leave() { input.moveMouse(*window, {200, 50}); }
  [[nodiscard]] Rect dot(int index) const { return findView(*window, kDots[index])->frame(); }
  void expectForm(const char* what, bool expanded) const {
    const double side = expanded ? 12 : 6;
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(dot(i), (Rect{{i * (expanded ? 22.0 : 16.0), expanded ? 0.0 : 3.0}, {side, side}}))
          << what << i;
    }
  }

  HeadlessPlatform headless;
  HeadlessInput& input = headless.input();
  std::unique_ptr<Window> window =
      std::make_unique<Window>(headless.application(), Rect{{100, 200}, {300, 200}}, style_mask::kTitled);
  AnimatedTrafficLightsView* lights = nullptr;
};

TEST_F(TrafficLights, growUnderThePointerAndShrinkAgain) {
  expectForm("at first ", false);
  EXPECT_EQ(lights->frame(), (Rect{{12, 180}, {58, 12}}));
  enter();
  EXPECT_TRUE(lights->isExpanded());
  expectForm("not at once ", false);
  headless.advance(0.21);
  expectForm("expanded ", true);
  EXPECT_EQ(lights->frame(), (Rect{{12, 180}, {56, 12}}));

  for (const Point near : {Point{14, 186}, {8, 186}, {40, 195.9}, {71, 177}}) {
    input.moveMouse(*window, near);
    EXPECT_TRUE(lights->isExpanded()) << "over a dot and up to 4 points away is not out: " << near.x;
  }
  leave();
  EXPECT_FALSE(lights->isExpanded());
  headless.advance(0.21);
  expectForm("compact ", false);
  EXPECT_EQ(lights->frame(), (Rect{{12, 180}, {38, 12}}));
  EXPECT_TRUE(headless.loop().isIdle());
}

TEST_F(TrafficLights, goOnFromWhereTheyAreWhenThePointerTurnsBack) {
  enter();
  headless.advance(0.1);
  const Rect before = dot(2);
  leave();
  EXPECT_EQ(dot(2), before);
  headless.advance(0.02);
  EXPECT_LT(dot(2).size.width, before.size.width);
  EXPECT_GT(dot(2).size.width, 6);
  headless.advance(0.2);
  expectForm("compact ", false);
}

TEST_F(TrafficLights, onlyTheFirstButtonPressesADot) {
  input.press(*window, {15, 186}, {3, 1, {}});
  input.release(*window, {15, 186});
  EXPECT_TRUE(window->isVisible());
  input.press(*window, {15, 186});
  EXPECT_TRUE(window->isClosed());
}

/// Destroys its window as soon as that is about to close, as the owner of all windows may.
struct Owner : WindowDelegate {
  explicit Owner(std::unique_ptr<Window>& owned) : window(owned) {}
  void windowDidBecomeKey(Window&) override {}
  bool windowShouldClose(Window&) override {
    window.reset();
    return false;
  }
  void windowWillClose(Window&) override {}
  void windowDidMove(Window&) override {}
  void windowDidResize(Window&) override {}
  std::unique_ptr<Window>& window;
};

TEST_F(TrafficLights, survivesTheEndOfItsWindow) {
  std::unique_ptr<Window> other =
      std::make_unique<Window>(headless.application(), Rect{{0, 0}, {50, 50}}, style_mask::kTitled);
  Owner owner(other);
  other->setDelegate(owner);
  TrafficLightDot dot(TrafficLightType::close, *other);
  MouseEvent press;
  press.button = 1;
  EXPECT_TRUE(dot.mouseDown(press));
  EXPECT_EQ(other, nullptr);
  EXPECT_TRUE(dot.mouseDown(press)) << "with no window left";

  enter();
  window.reset();
  EXPECT_EQ(headless.loop().runningTimers(), 0U) << "an animation ends with its view";
}

}  // namespace
}  // namespace velto
