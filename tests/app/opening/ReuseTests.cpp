#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;
using test::url;
using ::testing::Contains;
using ::testing::IsEmpty;

TEST(Reuse, raisesAWindowThatShowsThePage) {
  const struct {
    const char* what;
    const char* open;
    const char* asked;
    bool same;
  } cases[] = {
      {"the same page", "https://a.example/x", "https://a.example/x", true},
      {"only the fragment differs", "https://a.example/x#one", "https://a.example/x#two", true},
      {"no path is the root", "https://a.example", "https://a.example/", true},
      {"the host's case", "https://a.example/x", "https://A.Example/x", true},
      {"the scheme's case", "https://a.example/x", "HTTPS://a.example/x", true},
      {"the path's case", "https://a.example/x", "https://a.example/X", false},
      {"another path", "https://a.example/x", "https://a.example/x/", false},
      {"another query", "https://a.example/x?a=1", "https://a.example/x?a=2", false},
      {"another port", "http://localhost:3000/", "http://localhost:3001/", false},
      {"another scheme", "https://a.example/", "http://a.example/", false},
      {"an address without a host has no key", "about:blank", "about:blank", false},
  };
  for (const auto& c : cases) {
    TestApplication app;
    app.settle();
    app.showWindow(c.open);
    app.delegate().opener().applyLaunchRequest({.target = url(c.asked), .reuse = true});
    EXPECT_EQ(app.panelCount(), c.same ? 1U : 2U) << c.what;
  }
}

TEST(Reuse, happensOnlyWhenItIsAskedForAndNeverWithPrivateWindows) {
  const struct {
    const char* what;
    bool openIsPrivate, reuse, incognito;
    bool opensAnother;
  } cases[] = {
      {"asked for", false, true, false, false},
      {"not asked for", false, false, false, true},
      {"the open one is private", true, true, false, true},
      {"the request is private", false, true, true, true},
      {"both are private", true, true, true, true},
  };
  for (const auto& c : cases) {
    TestApplication app;
    app.settle();
    app.showWindow("https://a.example/", {.incognito = c.openIsPrivate});
    app.delegate().opener().applyLaunchRequest(
        {.target = url("https://a.example/"), .reuse = c.reuse, .incognito = c.incognito});
    ASSERT_EQ(app.panelCount(), c.opensAnother ? 2U : 1U) << c.what;
    EXPECT_EQ(app.lastPanel().isPrivate, c.incognito) << c.what;
  }
}

TEST(Reuse, takesTheOldestOfSeveralAndSkipsThePrivateOne) {
  TestApplication app;
  app.settle();
  app.showWindow("https://a.example/", {.incognito = true});
  const HovrelPanel& oldest = app.showWindow("https://a.example/");
  app.showWindow("https://a.example/");
  app.showWindow("https://b.example/");
  app.receive({"velto://open?reuse=true&url=https://a.example/"});
  EXPECT_TRUE(oldest.isKey());
  EXPECT_EQ(app.panelCount(), 4U);
}

TEST(Reuse, comparesWhatTheWindowShowsNow) {
  TestApplication app;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/");
  app.pageOf(panel).clickLink("https://a.example/next");
  app.settleDown();
  app.receive({"velto://open?reuse=true&url=https://a.example/next"});
  EXPECT_EQ(app.panelCount(), 1U);
  app.receive({"velto://open?reuse=true&url=https://a.example/"});
  EXPECT_EQ(app.panelCount(), 2U);
}

TEST(Reuse, leavesEverythingButTheFrontOfTheWindowAsItWas) {
  TestApplication app;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/", {.width = 400, .height = 300, .x = 5, .y = 5});
  const Rect before = panel.frame();
  app.subsystems.log.clear();
  app.receive(
      {"velto://open?reuse=true&url=https://a.example/&width=900&height=900&x=90&y=90&zoom=200&hide=true"});
  EXPECT_EQ(panel.frame(), before);
  EXPECT_EQ(panel.webView->pageZoom(), 1);
  EXPECT_THAT(app.log(), IsEmpty()) << "neither the bar nor the page nor the session hears of it";
}

TEST(Reuse, bringsTheWindowForward) {
  const struct {
    const char* what;
    bool noFocus, background;
    bool takesKeyboard;
  } cases[] = {
      {"an ordinary request", false, false, true},
      {"without focus", true, false, false},
      {"background is not applied to a window that is there", false, true, true},
  };
  for (const auto& c : cases) {
    TestApplication app;
    app.settle();
    HovrelPanel& panel = app.showWindow("https://a.example/");
    HovrelPanel& other = app.showWindow("https://b.example/");
    app.headless.windowSystem().miniaturizeByHand(panel, true);
    app.settleDown();
    const int activations = app.headless.windowSystem().activations();

    app.delegate().opener().applyLaunchRequest({.target = url("https://a.example/"),
                                                .reuse = true,
                                                .background = c.background,
                                                .noFocus = c.noFocus});
    EXPECT_FALSE(panel.isMiniaturized()) << c.what;
    EXPECT_EQ(app.headless.windowSystem().frontToBack().front(), &panel) << c.what;
    EXPECT_EQ(panel.isKey(), c.takesKeyboard) << c.what;
    EXPECT_EQ(other.isKey(), !c.takesKeyboard) << c.what;
    EXPECT_EQ(app.headless.windowSystem().activations() - activations, c.takesKeyboard ? 1 : 0) << c.what;
  }
}

TEST(Reuse, onTopPinsAWindowThatThePersonHadUnpinned) {
  for (const bool onTop : {false, true}) {
    TestApplication app;
    AppDelegate& delegate = app.settle();
    HovrelPanel& panel = app.showWindow("https://a.example/", {.onTop = true});
    delegate.toggleKeepOnTop();
    ASSERT_TRUE(panel.unpinnedByPerson);
    delegate.opener().applyLaunchRequest(
        {.target = url("https://a.example/"), .reuse = true, .onTop = onTop});
    EXPECT_EQ(panel.isPinned, onTop);
    EXPECT_EQ(panel.unpinnedByPerson, !onTop);
    EXPECT_EQ(panel.level(), onTop ? 3 : 0);
  }
}

TEST(Reuse, withoutOnTopAPinnedWindowStaysPinned) {
  TestApplication app;
  app.settle();
  const HovrelPanel& panel = app.showWindow("https://a.example/", {.onTop = true});
  app.receive({"velto://open?reuse=true&url=https://a.example/"});
  EXPECT_TRUE(panel.isPinned);
}

}  // namespace
}  // namespace velto
