#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

KeyEvent escape(Modifiers modifiers = {}) {
  KeyEvent event;
  event.key = Key::escape;
  event.modifiers = modifiers;
  return event;
}

KeyEvent letter(const char* characters, Modifiers modifiers = {}) {
  KeyEvent event;
  event.characters = characters;
  event.modifiers = modifiers;
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
      {"once", {0}, 1, 0},
      {"twice", {0, 0.1}, 1, 1},
      {"just in time", {0, 0.299}, 1, 1},
      {"too slow", {0, 0.301}, 2, 0},
      {"three quick ones", {0, 0.1, 0.1}, 2, 1},
      {"four quick ones", {0, 0.1, 0.1, 0.1}, 2, 2},
      {"the second is too late and the third in time", {0, 0.4, 0.2}, 2, 1},
      {"each too late", {0, 0.4, 0.4, 0.4}, 4, 0},
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
    EXPECT_TRUE(panel.isVisible()) << c.what;
  }
}

TEST(HovrelPanel, otherKeysGoToThePageAndDoNotCountAsEscape) {
  TestApplication app;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/");
  app.headless.input().key(panel, escape());
  app.headless.input().key(panel, letter("a"));
  EXPECT_EQ(app.pageOf(panel).keysReceived().size(), 2U);
  EXPECT_EQ(app.subsystems.countOf("bar: expand"), 0);
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
  const Modifiers control{.control = true};
  app.headless.input().key(panel, letter("l", control));
  EXPECT_EQ(app.pageOf(panel).keysReceived().size(), 1U);
  app.barOf(panel).takesKeyEquivalents = true;
  app.headless.input().key(panel, letter("l", control));
  EXPECT_EQ(app.pageOf(panel).keysReceived().size(), 1U);
}

TEST(HovrelPanel, movesAndResizesAreRecorded) {
  TestApplication app;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/", {.width = 400, .height = 300, .x = 0, .y = 0});
  const Rect frame = panel.frame();
  const struct {
    const char* what;
    Rect to;
    int records;
  } cases[] = {
      {"moved", {{50, 60}, frame.size}, 1},
      {"resized", {{50, 60}, {500, 400}}, 1},
      {"neither", {{50, 60}, {500, 400}}, 0},
  };
  for (const auto& c : cases) {
    app.subsystems.log.clear();
    app.headless.windowSystem().moveByHand(panel, c.to);
    EXPECT_EQ(app.subsystems.countOf("sessions: schedule"), c.records) << c.what;
  }
}

}  // namespace
}  // namespace velto
