#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/HeadlessPlatform.h"
#include "platform/ui/Window.h"

namespace velto {
namespace {

class ClosingDelegate final : public WindowDelegate {
 public:
  void windowDidBecomeKey(Window&) override {}
  bool windowShouldClose(Window&) override { return true; }
  void windowWillClose(Window& window) override {
    if (onWillClose) onWillClose(window);
  }
  void windowDidMove(Window&) override {}
  void windowDidResize(Window&) override {}

  std::function<void(Window&)> onWillClose;
};

class WindowTest : public testing::Test {
 protected:
  std::unique_ptr<Window> make(const Rect& frame = {{0, 0}, {400, 300}}) {
    return std::make_unique<Window>(headless.application(), frame, style_mask::kTitled);
  }
  HeadlessPlatform headless;
};

TEST_F(WindowTest, HoldsItsSizeBetweenTheLeastAndTheMost) {
  struct Case {
    Size minimum, asked, given;
  };
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const Case& c : {
           Case{{25, 25}, {10, 30}, {25, 30}},
           {{25, 25}, {-5, 0}, {25, 25}},
           {{0, 0}, {0, 0.25}, {1, 1}},
           {{0, 0}, {1e18, 10000.5}, {10000, 10000}},
           {{320, 180}, {std::nan(""), kInfinity}, {320, 180}},
           {{99999, 1}, {10, 10}, {10000, 10}},
       }) {
    const auto window = make();
    window->setMinSize(c.minimum);
    window->setFrame({{7, 8}, c.asked});
    EXPECT_EQ(window->frame().size, c.given) << c.asked.width << "x" << c.asked.height;
    EXPECT_EQ(window->frame().origin, (Point{7, 8}));
  }
}

TEST_F(WindowTest, CentersALittleAboveTheMiddleOfItsScreen) {
  struct Case {
    Rect visible;
    Size size;
    Point origin;
  };
  for (const Case& c : {
           Case{{{0, 0}, {1920, 1053}}, {900, 700}, {510, 235}},
           {{{100, 50}, {1000, 700}}, {301, 100}, {450, 450}},
           {{{100, 50}, {1000, 700}}, {2000, 900}, {100, 50}},
       }) {
    Screen screen;
    screen.frame = c.visible;
    screen.visibleFrame = c.visible;
    headless.windowSystem().setScreens({screen});
    const auto window = make({c.visible.origin, c.size});
    window->center();
    EXPECT_EQ(window->frame().origin, c.origin)
        << window->frame().origin.x << ", " << window->frame().origin.y;
  }
}

TEST_F(WindowTest, IsOnTheScreenThatShowsMostOfIt) {
  Screen main = HeadlessWindowSystem::defaultScreen();
  Screen left = main;
  left.number = 2;
  left.frame = {{-1000, 0}, {1000, 800}};
  headless.windowSystem().setScreens({main, left});
  for (const auto& [x, number] :
       {std::pair{100.0, 1}, {-500.0, 2}, {-160.0, 1}, {-240.0, 2}, {-200.0, 1}, {-9000.0, 1}}) {
    EXPECT_EQ(make({{x, 10}, {400, 300}})->screen()->number, number) << x;
  }
  headless.windowSystem().setScreens({});
  const auto window = make({{3, 4}, {10, 10}});
  EXPECT_EQ(window->screen(), std::nullopt);
  window->center();
  EXPECT_EQ(window->frame().origin, (Point{3, 4}));
}

TEST_F(WindowTest, MayBeClosedAgainAndFreedByItsDelegate) {
  for (const bool runs : {true, false}) {
    HeadlessPlatform desktop;
    ClosingDelegate delegate;
    auto owned =
        std::make_unique<Window>(desktop.application(), Rect{{0, 0}, {100, 100}}, style_mask::kTitled);
    owned->setContentView(std::make_unique<View>());
    owned->setDelegate(delegate);
    const WeakPtr<Window> weak = *owned;
    owned->makeKeyAndOrderFront();
    int closes = 0;
    delegate.onWillClose = [&](Window& closing) {
      ++closes;
      closing.close();
      closing.setFrameOrigin({50, 50});
      desktop.loop().async([freed = std::move(owned)]() mutable { freed.reset(); });
    };
    desktop.windowSystem().clickDelete(*owned);
    EXPECT_EQ(closes, 1);
    EXPECT_TRUE(weak);
    if (runs) {
      desktop.loop().drain();
      EXPECT_FALSE(weak);
    }
    // When it does not run, the platform frees the window with its queue.
  }
}

TEST_F(WindowTest, OutlivesItsDelegate) {
  const auto window = make();
  window->setDelegate(*std::make_unique<ClosingDelegate>());
  window->setFrameOrigin({1, 1});
  window->close();
  EXPECT_TRUE(window->isClosed());
}

TEST_F(WindowTest, ZoomsToItsScreenAndBack) {
  const Rect before{{100, 100}, {400, 300}};
  const struct {
    Size ratio;
    Rect zoomed;
  } cases[] = {{{0, 0}, {{0, 0}, {1920, 1053}}},
               {{16, 9}, {{24, 0}, {1872, 1053}}},
               {{1, 2}, {{697, 0}, {526, 1053}}}};
  for (const auto& c : cases) {
    const auto window = make(before);
    window->setContentAspectRatio(c.ratio);
    window->zoom();
    EXPECT_EQ(window->frame(), c.zoomed) << c.ratio.width;
    window->zoom();
    EXPECT_EQ(window->frame(), before) << c.ratio.width;
    window->zoom();
    window->setFrame({{7, 8}, {90, 80}});
    window->zoom();
    EXPECT_EQ(window->frame(), c.zoomed) << "from where the person put it";
  }
  headless.windowSystem().setScreens({});
  const auto window = make(before);
  window->zoom();
  EXPECT_EQ(window->frame(), before);
}

TEST_F(WindowTest, GoesToAFrameInStepsUntilAnotherIsSet) {
  const Animator animator(headless.loop(), headless.loop(), headless.windowSystem());
  const auto window = make({{0, 0}, {400, 300}});
  window->animateFrame({{100, 50}, {200.5, 300}}, animator);
  headless.advance(0.105);
  EXPECT_EQ(window->frame(), (Rect{{50, 25}, {300, 300}})) << "in whole units on the way";
  headless.advance(1);
  EXPECT_EQ(window->frame(), (Rect{{100, 50}, {200.5, 300}}));
  window->animateFrame({{0, 0}, {400, 300}}, animator);
  headless.advance(0.1);
  window->setFrameOrigin({5, 5});
  const Rect last = window->frame();
  headless.advance(1);
  EXPECT_EQ(window->frame(), last);
  window->animateFrame({{0, 0}, {400, 300}}, animator);
  window->close();
  headless.advance(1);
  EXPECT_EQ(window->frame(), last) << "a closed window stays";
}

}  // namespace
}  // namespace velto
