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

class WindowCommandsTest : public ::testing::Test {
 protected:
  TestApplication app;
  AppDelegate& delegate = app.settle();
};

TEST_F(WindowCommandsTest, pinningRaisesTheWindowAndTellsThePageOfAChangeOnly) {
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

TEST_F(WindowCommandsTest, pinningAgainRaisesAndUnpinningDoesNot) {
  HovrelPanel& panel = app.showWindow("https://a.example/", {.onTop = true});
  HovrelPanel& other = app.showWindow("https://b.example/", {.onTop = true});
  WindowPinning::setPinned(panel, true);
  EXPECT_EQ(app.headless.windowSystem().frontToBack().front(), &panel);
  WindowPinning::setPinned(other, false);
  other.orderFrontRegardless();
  WindowPinning::setPinned(panel, false);
  EXPECT_EQ(app.headless.windowSystem().frontToBack().front(), &other);
}

TEST_F(WindowCommandsTest, keepOnTopRemembersThatThePersonUnpinned) {
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

TEST_F(WindowCommandsTest, areForTheKeyWindowAlone) {
  const HovrelPanel& first = app.showWindow("https://a.example/");
  const HovrelPanel& second = app.showWindow("https://b.example/");
  delegate.toggleKeepOnTop();
  delegate.zoomIn();
  EXPECT_FALSE(first.isPinned);
  EXPECT_EQ(first.webView->pageZoom(), 1);
  EXPECT_TRUE(second.isPinned);
  EXPECT_NE(second.webView->pageZoom(), 1);

  Window other(app.headless.application(), {{0, 0}, {300, 200}}, style_mask::kTitled);
  other.makeKeyAndOrderFront();
  app.subsystems.log.clear();
  delegate.toggleKeepOnTop();
  delegate.resetZoom();
  EXPECT_EQ(other.level(), 0);
  EXPECT_THAT(app.log(), IsEmpty());
}

TEST_F(WindowCommandsTest, theAdBlockerIsSwitchedForAll) {
  const HovrelPanel& panel = app.showWindow("https://a.example/");
  delegate.toggleAdBlocker();
  app.settleDown();
  EXPECT_TRUE(isAdBlockerEnabled(app.headless.defaults()));
  EXPECT_FALSE(app.pageOf(panel).scripts().empty());
}

TEST_F(WindowCommandsTest, unpinningAllMarksThoseThatWerePinned) {
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

TEST(PageZoom, stepsWithinItsLimits) {
  using Command = void (AppDelegate::*)();
  const struct {
    Command command;
    double from, to;
  } cases[] = {
      {&AppDelegate::zoomIn, 1, 1.1},     {&AppDelegate::zoomIn, 2.95, 3},   {&AppDelegate::zoomOut, 1, 0.9},
      {&AppDelegate::zoomOut, 0.3, 0.25}, {&AppDelegate::resetZoom, 2.5, 1},
  };
  for (const auto& c : cases) {
    TestApplication app;
    AppDelegate& delegate = app.settle();
    const HovrelPanel& panel = app.showWindow("https://a.example/", {.zoom = c.from});
    app.subsystems.log.clear();
    (delegate.*c.command)();
    EXPECT_NEAR(panel.webView->pageZoom(), c.to, 1e-12) << c.from;
    EXPECT_THAT(app.log(),
                ElementsAre("bar: zoom " + test::textOf(c.to), "furniture: show zoom " + test::textOf(c.to)));
  }
}

TEST(PageZoom, reachesTheEndsAndComesBackEvenWithoutABar) {
  TestApplication app;
  app.subsystems.makesControlBars = false;
  AppDelegate& delegate = app.settle();
  const HovrelPanel& panel = app.showWindow("https://a.example/");
  for (int i = 0; i < 30; ++i) delegate.zoomIn();
  EXPECT_EQ(panel.webView->pageZoom(), 3);
  for (int i = 0; i < 40; ++i) delegate.zoomOut();
  EXPECT_EQ(panel.webView->pageZoom(), 0.25);
}

}  // namespace
}  // namespace velto
