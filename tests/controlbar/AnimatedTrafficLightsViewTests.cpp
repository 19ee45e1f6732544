#include <array>
#include <cstddef>
#include <memory>

#include <cairomm/surface.h>
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
  headless.advance(0.1);
  EXPECT_NEAR(dot(1).size.width, 9, 0.8);
  EXPECT_NEAR(dot(1).midY(), 6, 1e-9);
  EXPECT_NEAR(dot(2).minX(), 38, 1.5);
  headless.advance(0.11);
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

TEST_F(TrafficLights, eachDotDoesItsPart) {
  input.press(*window, {15, 186}, {3, 1, {}});
  input.release(*window, {15, 186});
  EXPECT_TRUE(window->isVisible());

  input.click(*window, kDots[2]);
  EXPECT_EQ(window->frame(), HeadlessWindowSystem::defaultScreen().visibleFrame);
  input.click(*window, kDots[2]);
  EXPECT_EQ(window->frame(), (Rect{{100, 200}, {300, 200}}));

  input.press(*window, {12 + 16 + 3, 186});
  EXPECT_TRUE(window->isMiniaturized());
  window->deminiaturize();

  input.press(*window, {12 + 3, 186});
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

/// Red, green and blue at a point of the row, y upwards, over white.
std::array<int, 3> colorAt(View& lights, int x, int y) {
  const auto surface = Cairo::ImageSurface::create(Cairo::FORMAT_RGB24, 58, 12);
  const auto context = Cairo::Context::create(surface);
  context->set_source_rgb(1, 1, 1);
  context->paint();
  context->translate(0, 12);
  context->scale(1, -1);
  lights.render(context);
  surface->flush();
  const auto* pixel = surface->get_data() + (11 - y) * surface->get_stride() + x * 4;
  return {pixel[2], pixel[1], pixel[0]};
}

TEST_F(TrafficLights, areFaintThenBrightWithTheirSymbols) {
  const struct {
    const char* what;
    bool expanded;
    int x, y;
    std::array<int, 3> color;
  } cases[] = {
      {"close at a fifth", false, 2, 5, {255, 223, 222}},
      {"close", true, 6, 9, {255, 94, 87}},
      {"minimise", true, 28, 9, {255, 189, 46}},
      {"zoom", true, 47, 9, {41, 204, 64}},
      {"the bar of minimise", true, 28, 6, {191, 142, 35}},
      {"the upright of zoom", true, 50, 9, {31, 153, 48}},
  };
  headless.windowSystem().setPrefersReducedMotion(true);
  for (const auto& c : cases) {
    if (c.expanded) enter();
    const auto color = colorAt(*lights, c.x, c.y);
    for (std::size_t i = 0; i < color.size(); ++i) EXPECT_NEAR(color[i], c.color[i], 6) << c.what << " " << i;
  }
}

}  // namespace
}  // namespace velto
