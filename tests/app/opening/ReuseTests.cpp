#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;
using test::url;
using ::testing::IsEmpty;

class ReuseTest : public ::testing::Test {
 protected:
  TestApplication app;
  AppDelegate& delegate = app.settle();
};

TEST_F(ReuseTest, takesTheOldestOfSeveralAndNeverAPrivateOne) {
  app.showWindow("https://a.example/", {.incognito = true});
  const HovrelPanel& oldest = app.showWindow("https://a.example/");
  app.showWindow("https://a.example/");
  app.showWindow("https://b.example/");
  app.receive({"velto://open?reuse=true&url=https://a.example/"});
  EXPECT_TRUE(oldest.isKey());
  EXPECT_EQ(app.panelCount(), 4U);
  app.receive({"velto://open?reuse=true&incognito=true&url=https://a.example/"});
  EXPECT_EQ(app.panelCount(), 5U);
  EXPECT_TRUE(app.lastPanel().isPrivate);
  app.receive({"velto://open?url=https://a.example/"});
  EXPECT_EQ(app.panelCount(), 6U) << "nobody asked for it";
}

TEST_F(ReuseTest, comparesWhatTheWindowShowsNow) {
  HovrelPanel& panel = app.showWindow("https://a.example/");
  app.pageOf(panel).clickLink("https://a.example/next#part");
  app.settleDown();
  app.receive({"velto://open?reuse=true&url=https://A.example/next"});
  EXPECT_EQ(app.panelCount(), 1U);
  app.receive({"velto://open?reuse=true&url=https://a.example/"});
  EXPECT_EQ(app.panelCount(), 2U);
  app.receive({"velto://open?reuse=true&url=about:blank", "velto://open?reuse=true&url=about:blank"});
  EXPECT_EQ(app.panelCount(), 4U) << "an address without a host is no other one's";
}

TEST_F(ReuseTest, leavesEverythingButTheFrontOfTheWindowAsItWas) {
  HovrelPanel& panel = app.showWindow("https://a.example/", {.width = 400, .height = 300, .x = 5, .y = 5});
  const Rect before = panel.frame();
  app.subsystems.log.clear();
  app.receive(
      {"velto://open?reuse=true&url=https://a.example/&width=900&height=900&x=90&y=90&zoom=200&hide=true"});
  EXPECT_EQ(panel.frame(), before);
  EXPECT_EQ(panel.webView->pageZoom(), 1);
  EXPECT_THAT(app.log(), IsEmpty()) << "neither the bar nor the page nor the session hears of it";
}

TEST_F(ReuseTest, bringsTheWindowForwardWhateverIsSaidOfTheBackground) {
  HovrelPanel& panel = app.showWindow("https://a.example/");
  app.showWindow("https://b.example/");
  app.headless.windowSystem().miniaturizeByHand(panel, true);
  app.settleDown();
  app.receive({"velto://open?reuse=true&background=true&url=https://a.example/"});
  EXPECT_FALSE(panel.isMiniaturized());
  EXPECT_TRUE(panel.isKey());
}

TEST_F(ReuseTest, onTopPinsAWindowEvenOneThatThePersonHadUnpinned) {
  HovrelPanel& panel = app.showWindow("https://a.example/", {.onTop = true});
  const auto reuse = [&](bool onTop) {
    delegate.opener().applyLaunchRequest(
        {.target = url("https://a.example/"), .reuse = true, .onTop = onTop});
  };
  reuse(false);
  EXPECT_TRUE(panel.isPinned) << "nothing was said about it";
  delegate.toggleKeepOnTop();
  reuse(false);
  EXPECT_FALSE(panel.isPinned);
  EXPECT_TRUE(panel.unpinnedByPerson);
  reuse(true);
  EXPECT_FALSE(panel.unpinnedByPerson);
  EXPECT_EQ(panel.level(), 3);
}

}  // namespace
}  // namespace velto
