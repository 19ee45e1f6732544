#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;
using test::url;
using ::testing::ElementsAre;
using Texts = std::vector<std::string>;

constexpr const char* kHistory = R"([
  {"url": "velto-player://youtube?v=abcdefghijk", "title": "A video", "timestamp": "2024-01-02T03:00:00Z"},
  {"url": "https://example.com/", "title": "Example", "timestamp": "2024-01-01T03:00:00Z"},
  {"url": "https://older.example/", "title": "Older", "timestamp": "2023-01-01T03:00:00Z"}])";

TEST(LaunchRestoration, opensTheNewestWebPageOfTheHistoryWithTheAddressReady) {
  TestApplication app;
  app.writeHistory(kHistory);
  app.start();
  app.settleDown();
  EXPECT_THAT(app.pages(), ElementsAre("https://example.com/"));
  EXPECT_EQ(app.barOf(app.lastPanel()).address, "https://example.com/");
}

TEST(LaunchRestoration, reopensTheSessionOnceAndRaisesAWindowAfterwards) {
  TestApplication app;
  app.writeHistory(kHistory);
  app.subsystems.sessionHasWindows = true;
  app.subsystems.sessionPages = {"https://one.example/", "https://two.example/", "https://three.example/"};
  AppDelegate& delegate = app.start();
  app.settleDown();
  EXPECT_EQ(app.panelCount(), 3U);
  EXPECT_TRUE(delegate.applicationShouldHandleReopen(true));
  app.settleDown();
  EXPECT_EQ(app.panelCount(), 3U);
  EXPECT_EQ(app.subsystems.countOf("session: restore"), 1);
}

TEST(LaunchRestoration, takesTheSessionBeforeItIsReopened) {
  // A session whose pages cannot be opened must not be tried again by the second half of the start.
  TestApplication app;
  app.subsystems.sessionHasWindows = true;
  app.start();
  app.settleDown();
  EXPECT_EQ(app.subsystems.countOf("session: restore"), 1);
  EXPECT_EQ(app.panelCount(), 0U);
}

TEST(LaunchRestoration, restoresAtDidFinishWhenTheDesktopAskedForNothing) {
  TestApplication app;
  app.subsystems.sessionHasWindows = true;
  app.subsystems.sessionPages = {"https://one.example/"};
  AppDelegate& delegate = app.make();
  delegate.applicationWillFinishLaunching();
  delegate.applicationDidFinishLaunching();
  EXPECT_EQ(app.panelCount(), 1U);
}

TEST(LaunchRestoration, aSessionWithoutWindowsOpensNothingAtStart) {
  TestApplication app;
  app.writeHistory(kHistory);
  app.subsystems.sessionHasWindows = false;
  AppDelegate& delegate = app.start();
  app.settleDown();
  EXPECT_EQ(app.panelCount(), 0U);
  EXPECT_EQ(app.subsystems.countOf("session: restore"), 0);
  // The start is over and the session with it: a click on the icon now asks the history.
  EXPECT_TRUE(delegate.applicationShouldHandleReopen(false));
  app.settleDown();
  EXPECT_THAT(app.pages(), ElementsAre("https://example.com/"));
}

TEST(LaunchRestoration, raisesTheKeyWindowOrElseTheNewest) {
  TestApplication app;
  AppDelegate& delegate = app.settle();
  HovrelPanel& first = app.showWindow("https://one.example/");
  HovrelPanel& second = app.showWindow("https://two.example/");

  app.headless.windowSystem().focus(&first);
  delegate.applicationShouldHandleReopen(true);
  EXPECT_TRUE(first.isKey());
  EXPECT_EQ(app.headless.windowSystem().frontToBack().front(), &first);

  app.headless.windowSystem().miniaturizeByHand(second, true);
  Window other(app.headless.application(), {{0, 0}, {300, 200}}, style_mask::kTitled);
  other.makeKeyAndOrderFront();
  app.settleDown();
  const int before = app.headless.windowSystem().activations();
  delegate.applicationShouldHandleReopen(false);
  EXPECT_FALSE(second.isMiniaturized());
  EXPECT_TRUE(second.isKey()) << "the other is no pop-out";
  EXPECT_EQ(app.headless.windowSystem().activations(), before + 1);
}

TEST(LaunchRestoration, doesNothingInTestMode) {
  TestApplication app;
  app.setTestMode();
  app.writeHistory(kHistory);
  app.subsystems.sessionHasWindows = true;
  AppDelegate& delegate = app.start();
  EXPECT_TRUE(delegate.applicationShouldHandleReopen(true));
  EXPECT_TRUE(delegate.applicationOpenUntitledFile());
  app.settleDown();
  EXPECT_EQ(app.panelCount(), 0U);
}

TEST(PendingLaunch, argumentsOpenTheirPagesInsteadOfTheSession) {
  const struct {
    const char* what;
    Texts arguments;
    Texts opened;
  } cases[] = {
      {"a request", {"velto://open?url=https%3A%2F%2Fa.example%2F"}, {"https://a.example/"}},
      {"several in their order",
       {"https://a.example/", "file:///tmp/b.html", "-x", "HTTPS://c.example/"},
       {"https://a.example/", "file:///tmp/b.html", "https://c.example/"}},
  };
  for (const auto& c : cases) {
    TestApplication app;
    app.headless.environment().arguments = c.arguments;
    app.subsystems.sessionHasWindows = true;
    app.subsystems.sessionPages = {"https://session.example/"};
    AppDelegate& delegate = app.start();
    EXPECT_EQ(app.panelCount(), 0U) << c.what << ": nothing opens before the start is over";
    EXPECT_TRUE(delegate.hasPendingExplicitLaunchTarget()) << c.what;
    app.settleDown();
    EXPECT_EQ(app.pages(), c.opened) << c.what;
    EXPECT_FALSE(delegate.hasPendingExplicitLaunchTarget()) << c.what;
  }
}

TEST(PendingLaunch, otherArgumentsHoldNothingBack) {
  TestApplication app;
  app.headless.environment().arguments = {"-https://a.example/", "a.example", "mailto:a@b.example", "3000",
                                          ""};
  app.subsystems.sessionHasWindows = true;
  app.subsystems.sessionPages = {"https://session.example/"};
  EXPECT_FALSE(app.start().hasPendingExplicitLaunchTarget());
  EXPECT_THAT(app.pages(), ElementsAre("https://session.example/"));
}

TEST(PendingLaunch, anArgumentThatNamesNoPageHoldsRestorationBackForTheStartOnly) {
  for (const char* argument : {"velto://open?width=500", "velto://history"}) {
    TestApplication app;
    app.headless.environment().arguments = {argument};
    app.writeHistory(
        R"([{"url": "https://last.example/", "title": "", "timestamp": "2024-01-01T00:00:00Z"}])");
    AppDelegate& delegate = app.start();
    app.settleDown();
    EXPECT_EQ(app.panelCount(), 0U) << argument;
    EXPECT_FALSE(delegate.hasPendingExplicitLaunchTarget()) << argument;
    delegate.applicationShouldHandleReopen(false);
    app.settleDown();
    EXPECT_THAT(app.pages(), ElementsAre("https://last.example/")) << argument;
  }
}

TEST(PendingLaunch, aRequestIsPendingUntilItIsCarriedOut) {
  TestApplication app;
  AppDelegate& delegate = app.settle();
  delegate.applicationOpenURLs({url("velto://open?url=https://a.example/")});
  EXPECT_TRUE(delegate.hasPendingExplicitLaunchTarget());
  delegate.applicationShouldHandleReopen(false);
  EXPECT_EQ(app.panelCount(), 0U);
  app.settleDown();
  EXPECT_FALSE(delegate.hasPendingExplicitLaunchTarget());
  EXPECT_EQ(app.panelCount(), 1U);

  delegate.applicationOpenURLs({url("velto://open?reuse=true&url=https://a.example/")});
  EXPECT_TRUE(delegate.hasPendingExplicitLaunchTarget());
  app.settleDown();
  EXPECT_FALSE(delegate.hasPendingExplicitLaunchTarget()) << "a window was raised";
  EXPECT_EQ(app.panelCount(), 1U);
}

TEST(PendingLaunch, whatNamesNoPageIsNotPending) {
  TestApplication app;
  AppDelegate& delegate = app.settle();
  for (const char* text :
       {"velto://open?width=500", "VELTO://open?url=https://a.example/", "https://a.example/",
        "velto://history", "velto://import-safari", "velto://layout?open=x"}) {
    delegate.applicationOpenURLs({url(text)});
    EXPECT_FALSE(delegate.hasPendingExplicitLaunchTarget()) << text;
  }
  app.settleDown();
  EXPECT_EQ(app.panelCount(), 0U);
}

TEST(PendingLaunch, aRequestDuringTheStartKeepsTheSessionAway) {
  TestApplication app;
  app.subsystems.sessionHasWindows = true;
  app.subsystems.sessionPages = {"https://session.example/"};
  AppDelegate& delegate = app.make();
  delegate.applicationWillFinishLaunching();
  delegate.applicationOpenURLs({url("velto://open?url=https://a.example/")});
  delegate.applicationOpenUntitledFile();
  EXPECT_EQ(app.panelCount(), 0U);
  app.settleDown();
  delegate.applicationDidFinishLaunching();
  app.settleDown();
  EXPECT_THAT(app.pages(), ElementsAre("https://a.example/"));
}

TEST(PendingLaunch, argumentsOfALaterStartOpenLikeTheFirstOnes) {
  TestApplication app;
  AppDelegate& delegate = app.settle();
  delegate.applicationOpenArguments({"--flag", "https://a.example/",
                                     "velto://open?url=https://b.example/&width=420", "nonsense",
                                     "velto-player://youtube?v=abcdefghijk", "VELTO://open?url=https://c"});
  app.settleDown();
  ASSERT_EQ(app.panelCount(), 3U);
  const struct {
    const char* title;
    Size size;
  } opened[] = {{"a.example", {900, 700}}, {"Velto Video", {960, 540}}, {"b.example", {420, 700}}};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(app.panel(i).title(), opened[i].title);
    EXPECT_EQ(app.panel(i).frame().size, opened[i].size) << opened[i].title;
  }
  EXPECT_FALSE(delegate.hasPendingExplicitLaunchTarget());
}

}  // namespace
}  // namespace velto
