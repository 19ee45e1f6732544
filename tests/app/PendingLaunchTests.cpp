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
using ::testing::IsEmpty;

using Texts = std::vector<std::string>;

TEST(PendingLaunch, argumentsOpenTheirPagesInsteadOfTheSession) {
  const struct {
    const char* what;
    Texts arguments;
    Texts opened;
  } cases[] = {
      {"a request", {"velto://open?url=https%3A%2F%2Fa.example%2F"}, {"https://a.example/"}},
      {"the older scheme", {"hovrel://open?url=https%3A%2F%2Fa.example%2F"}, {"https://a.example/"}},
      {"a page", {"https://a.example/"}, {"https://a.example/"}},
      {"a page with its scheme in capitals", {"HTTPS://a.example/"}, {"https://a.example/"}},
      {"a file", {"file:///tmp/a.html"}, {"file:///tmp/a.html"}},
      {"several in their order",
       {"https://a.example/", "https://b.example/", "-x", "https://c.example/"},
       {"https://a.example/", "https://b.example/", "https://c.example/"}},
      {"two requests",
       {"velto://open?url=https://a.example/", "velto://open?url=https://b.example/"},
       {"https://a.example/", "https://b.example/"}},
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

TEST(PendingLaunch, anArgumentIsPendingNoLongerThanItsWindowTakes) {
  TestApplication app;
  app.headless.environment().arguments = {"https://a.example/"};
  AppDelegate& delegate = app.start();
  app.headless.loop().runTurn();
  EXPECT_EQ(app.panelCount(), 1U);
  EXPECT_FALSE(delegate.hasPendingExplicitLaunchTarget());
}

TEST(PendingLaunch, otherArgumentsHoldNothingBack) {
  for (const Texts& arguments : {Texts{}, Texts{"-https://a.example/"}, Texts{"a.example"},
                                 Texts{"mailto:a@b.example"}, Texts{"--flag", "3000", ""}}) {
    TestApplication app;
    app.headless.environment().arguments = arguments;
    app.subsystems.sessionHasWindows = true;
    app.subsystems.sessionPages = {"https://session.example/"};
    AppDelegate& delegate = app.start();
    EXPECT_FALSE(delegate.hasPendingExplicitLaunchTarget());
    EXPECT_THAT(app.pages(), ElementsAre("https://session.example/"));
  }
}

TEST(PendingLaunch, anArgumentThatNamesNoPageHoldsRestorationBackForTheStartOnly) {
  for (const char* argument :
       {"velto://open?width=500", "VELTO://open?url=https://a.example/", "velto://history"}) {
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
       {"velto://open?width=500", "velto://open?player=youtube&v=short&url=https://example.com",
        "VELTO://open?url=https://a.example/", "https://a.example/", "velto://history",
        "velto://import-safari", "velto://layout?open=x", "velto:"}) {
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
