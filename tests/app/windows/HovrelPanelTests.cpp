#include <vector>

#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;

KeyEvent escape() {
  KeyEvent event;
  event.key = Key::escape;
  return event;
}

TEST(HovrelPanel, twoQuickEscapesOpenTheAddressField) {
  const struct {
    const char* what;
    /// Seconds before each press.
    std::vector<double> pauses;
    /// How many presses reach the page, and how often the field opens.
    std::size_t passed;
    int opened;
  } cases[] = {
      {"just in time", {0, 0.299}, 1, 1},
      {"too slow", {0, 0.301}, 2, 0},
      {"four quick ones", {0, 0.1, 0.1, 0.1}, 2, 2},
      {"the second is too late and the third in time", {0, 0.4, 0.2}, 2, 1},
  };
  for (const auto& c : cases) {
    TestApplication app;
    app.settle();
    HovrelPanel& panel = app.showWindow("https://a.example/");
    for (const double pause : c.pauses) {
      app.headless.advance(pause);
      app.headless.input().key(panel, escape());
    }
    EXPECT_EQ(app.pageOf(panel).keysReceived().size(), c.passed) << c.what;
    EXPECT_EQ(app.subsystems.countOf("bar: address nothing"), c.opened) << c.what;
    EXPECT_EQ(app.subsystems.countOf("bar: expand"), c.opened) << c.what;
  }
}

TEST(HovrelPanel, escapesOfTwoWindowsAreNotOne) {
  TestApplication app;
  app.settle();
  HovrelPanel& first = app.showWindow("https://a.example/");
  HovrelPanel& second = app.showWindow("https://b.example/");
  app.headless.windowSystem().focus(&first);
  app.headless.input().key(first, escape());
  app.headless.windowSystem().focus(&second);
  app.headless.input().key(second, escape());
  EXPECT_EQ(app.subsystems.countOf("bar: expand"), 0);
}

TEST(HovrelPanel, theSecondEscapeIsUsedUpEvenWithoutABar) {
  TestApplication app;
  app.subsystems.makesControlBars = false;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/");
  app.headless.input().key(panel, escape());
  app.headless.input().key(panel, escape());
  EXPECT_EQ(app.pageOf(panel).keysReceived().size(), 1U);
}

TEST(HovrelPanel, offersKeyEquivalentsToTheBarFirst) {
  TestApplication app;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/");
  KeyEvent event;
  event.characters = "l";
  event.modifiers = {.control = true};
  for (const bool takes : {false, true}) {
    app.barOf(panel).takesKeyEquivalents = takes;
    app.headless.input().key(panel, event);
    EXPECT_EQ(app.pageOf(panel).keysReceived().size(), 1U);
  }
}

TEST(HovrelPanel, movesAndResizesAreRecorded) {
  TestApplication app;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/", {.width = 400, .height = 300, .x = 0, .y = 0});
  const Size size = panel.frame().size;
  for (const Rect& to : {Rect{{50, 60}, size}, Rect{{50, 60}, {500, 400}}}) {
    app.subsystems.log.clear();
    app.headless.windowSystem().moveByHand(panel, to);
    EXPECT_EQ(app.subsystems.countOf("sessions: schedule"), 1);
  }
}

}  // namespace
}  // namespace velto
