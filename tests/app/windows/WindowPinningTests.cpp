#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kPinned =
    "window.dispatchEvent(new CustomEvent('veltowindow', {detail: {onTop: true}})); undefined";
constexpr const char* kUnpinned =
    "window.dispatchEvent(new CustomEvent('veltowindow', {detail: {onTop: false}})); undefined";

TEST(WindowPinning, raisesTheWindowAndTellsThePageOfAChangeOnly) {
  TestApplication app;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/");
  app.showWindow("https://b.example/");
  const HeadlessWebView& page = app.pageOf(panel);

  WindowPinning::setPinned(panel, true);
  EXPECT_EQ(panel.level(), 3);
  EXPECT_EQ(app.headless.windowSystem().frontToBack().front(), &panel);
  EXPECT_FALSE(panel.isKey());
  EXPECT_THAT(page.scripts(), ElementsAre(kPinned));
  WindowPinning::setPinned(panel, true);
  EXPECT_THAT(page.scripts(), ElementsAre(kPinned));

  WindowPinning::setPinned(panel, false);
  EXPECT_EQ(panel.level(), 0);
  EXPECT_THAT(page.scripts(), ElementsAre(kPinned, kUnpinned));
  WindowPinning::setPinned(panel, false);
  EXPECT_THAT(page.scripts(), ElementsAre(kPinned, kUnpinned));
}

TEST(WindowPinning, pinningAgainBringsTheWindowForwardAgain) {
  TestApplication app;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/", {.onTop = true});
  app.showWindow("https://b.example/", {.onTop = true});
  WindowPinning::setPinned(panel, true);
  EXPECT_EQ(app.headless.windowSystem().frontToBack().front(), &panel);
}

TEST(WindowPinning, unpinningDoesNotRaise) {
  TestApplication app;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/", {.onTop = true});
  HovrelPanel& other = app.showWindow("https://b.example/");
  WindowPinning::setPinned(panel, false);
  EXPECT_EQ(app.headless.windowSystem().frontToBack().front(), &other);
}

TEST(WindowPinning, worksWithoutAPage) {
  TestApplication app;
  HovrelPanel panel(app.headless.application(), {{0, 0}, {300, 200}}, style_mask::kTitled);
  WindowPinning::setPinned(panel, true);
  EXPECT_TRUE(panel.isPinned);
  EXPECT_EQ(panel.level(), 3);
}

TEST(WindowPinning, theCommandRemembersThatThePersonUnpinned) {
  TestApplication app;
  AppDelegate& delegate = app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/");
  const struct { bool pinned, unpinnedByPerson; } after[] = {{true, false}, {false, true}, {true, false}};
  for (const auto& expected : after) {
    app.subsystems.log.clear();
    delegate.toggleKeepOnTop();
    EXPECT_EQ(panel.isPinned, expected.pinned);
    EXPECT_EQ(panel.unpinnedByPerson, expected.unpinnedByPerson);
    EXPECT_THAT(app.log(), ElementsAre("sessions: schedule"));
  }
}

TEST(WindowPinning, theCommandIsForTheKeyWindowAlone) {
  TestApplication app;
  AppDelegate& delegate = app.settle();
  const HovrelPanel& first = app.showWindow("https://a.example/");
  const HovrelPanel& second = app.showWindow("https://b.example/");
  delegate.toggleKeepOnTop();
  EXPECT_FALSE(first.isPinned);
  EXPECT_TRUE(second.isPinned);

  Window other(app.headless.application(), {{0, 0}, {300, 200}}, style_mask::kTitled);
  other.makeKeyAndOrderFront();
  app.subsystems.log.clear();
  delegate.toggleKeepOnTop();
  EXPECT_EQ(other.level(), 0);
  EXPECT_TRUE(second.isPinned);
  EXPECT_THAT(app.log(), IsEmpty());
}

TEST(WindowPinning, unpinningAllMarksThoseThatWerePinned) {
  TestApplication app;
  AppDelegate& delegate = app.settle();
  const HovrelPanel& pinned = app.showWindow("https://a.example/", {.onTop = true});
  const HovrelPanel& ordinary = app.showWindow("https://b.example/");
  const HovrelPanel& pinnedToo = app.showWindow("https://c.example/", {.onTop = true});
  app.subsystems.log.clear();
  delegate.unpinAllWindows();
  for (const HovrelPanel* panel : {&pinned, &pinnedToo}) {
    EXPECT_FALSE(panel->isPinned);
    EXPECT_TRUE(panel->unpinnedByPerson);
    EXPECT_EQ(panel->level(), 0);
    EXPECT_EQ(app.pageOf(*panel).scripts().back(), kUnpinned);
  }
  EXPECT_FALSE(ordinary.unpinnedByPerson);
  EXPECT_THAT(app.pageOf(ordinary).scripts(), IsEmpty());
  EXPECT_THAT(app.log(), ElementsAre("sessions: schedule")) << "once for all";
}

}  // namespace
}  // namespace velto
