#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;
using test::url;

Screen screen(int number, const Rect& frame, const Rect& visible) {
  Screen made;
  made.number = number;
  made.frame = frame;
  made.visibleFrame = visible;
  return made;
}

const Screen kMain = screen(1, {{0, 0}, {1920, 1080}}, {{0, 0}, {1920, 1053}});
const Screen kRight = screen(2, {{1920, 0}, {1280, 1024}}, {{1920, 40}, {1280, 984}});

constexpr Size kSize{400, 300};

TEST(WindowPlacement, followsTheRequestOnTheRightScreen) {
  const struct {
    const char* what;
    std::vector<Screen> screens;
    std::optional<Screen> target;
    std::optional<std::int64_t> x, y;
    Point origin;
  } cases[] = {
      {"on the main screen", {kMain, kRight}, {}, 40, 60, {40, 693}},
      {"on the target screen", {kMain, kRight}, kRight, 40, 60, {1960, 664}},
      {"x alone", {kMain}, {}, 40, {}, {40, 753}},
      {"y alone", {kMain}, {}, {}, 60, {0, 693}},
      {"held on the target screen", {kMain, kRight}, kRight, 99999, -500, {2800, 724}},
      {"on a screen that has just gone", {}, kRight, 40, 60, {1960, 664}},
      {"no screen at all", {}, {}, 40, 60, {0, 0}},
      {"nothing asked for", {kMain}, {}, {}, {}, {760, 502}},
      {"nothing asked for and no screen", {}, {}, {}, {}, {0, 0}},
  };
  for (const auto& c : cases) {
    TestApplication app;
    app.settle();
    app.headless.windowSystem().setScreens(c.screens);
    HovrelPanel& panel = app.showWindow(
        "https://a.example/", {.width = 400, .height = 300, .x = c.x, .y = c.y, .targetScreen = c.target});
    EXPECT_EQ(panel.frame(), (Rect{c.origin, kSize})) << c.what;
    EXPECT_TRUE(panel.isVisible()) << c.what;
  }
}

TEST(WindowPlacement, stepsAwayFromTheReferenceOnItsScreen) {
  const struct {
    const char* what;
    std::vector<Screen> screens;
    Rect reference;
    std::optional<std::int64_t> x;
    Point origin;
  } cases[] = {
      {"on the main screen", {kMain, kRight}, {{100, 400}, {300, 200}}, {}, {124, 376}},
      {"on another screen", {kMain, kRight}, {{2000, 400}, {300, 200}}, {}, {2024, 376}},
      {"held on that screen", {kMain, kRight}, {{2900, 50}, {300, 200}}, {}, {2800, 40}},
      {"a place that was asked for counts more", {kMain, kRight}, {{2000, 400}, {300, 200}}, 7, {7, 753}},
      {"without a screen it stays where it is", {}, {{100, 400}, {300, 200}}, {}, {0, 0}},
  };
  for (const auto& c : cases) {
    TestApplication app;
    app.settle();
    Window reference(app.headless.application(), c.reference, style_mask::kTitled);
    app.headless.windowSystem().setScreens(c.screens);
    const HovrelPanel& panel = app.showWindow(
        "https://a.example/", {.width = 400, .height = 300, .x = c.x, .referenceWindow = &reference});
    EXPECT_EQ(panel.frame().origin, c.origin) << c.what;
  }
}

TEST(WindowPlacement, happensBeforeTheWindowIsShown) {
  TestApplication app;
  app.settle();
  std::vector<Rect> frames;
  app.subsystems.onCall = [&](const std::string& entry) {
    if (entry == "sessions: schedule") {
      for (const Window* window : app.headless.application().windows()) {
        EXPECT_EQ(window->isVisible(), !frames.empty()) << "moved first, shown second";
        frames.push_back(window->frame());
      }
    }
  };
  app.showWindow("https://a.example/", {.width = 400, .height = 300, .x = 0, .y = 0});
  ASSERT_EQ(frames.size(), 2U);
  EXPECT_EQ(frames[0], frames[1]);
}

}  // namespace
}  // namespace velto
