#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/LaunchDecision.h"
#include "tests/support/TestApplication.h"

namespace velto {
namespace {

namespace action = launch_restoration;
using test::TestApplication;
using test::url;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(LaunchDecision, takesTheFirstRuleThatApplies) {
  const auto page = url("https://example.com/");
  const struct {
    const char* what;
    bool pending, open;
    std::optional<bool> sessionHasWindows;
    bool history;
    AppLaunchRestorationAction decided;
  } cases[] = {
      {"something explicit beats everything", true, true, true, true, action::None{}},
      {"something explicit with nothing else", true, false, {}, false, action::None{}},
      {"open windows beat the session", false, true, true, true, action::FocusExisting{}},
      {"open windows beat an empty session", false, true, false, true, action::FocusExisting{}},
      {"the session beats the history", false, false, true, true, action::RestoreSession{}},
      {"an empty session opens not even the last page", false, false, false, true, action::None{}},
      {"the history, with the address ready", false, false, {}, true, action::Open{page, true}},
      {"nothing at all", false, false, {}, false, action::None{}},
  };
  for (const auto& c : cases) {
    LaunchCircumstances now;
    now.hasPendingExplicitLaunchTarget = c.pending;
    now.hasOpenWindows = c.open;
    now.pendingSessionHasWindows = c.sessionHasWindows;
    now.newestWebPage = [&] { return c.history ? std::optional(page) : std::nullopt; };
    EXPECT_EQ(decideLaunchRestoration(now), c.decided) << c.what;
  }
}

TEST(LaunchDecision, readsTheHistoryOnlyWhenItMatters) {
  LaunchCircumstances now;
  now.pendingSessionHasWindows = false;
  now.newestWebPage = []() -> std::optional<Url> {
    ADD_FAILURE() << "the history was read";
    return std::nullopt;
  };
  decideLaunchRestoration(now);
}

constexpr const char* kHistory = R"([
  {"url": "velto-player://youtube?v=abcdefghijk", "title": "A video", "timestamp": "2024-01-02T03:00:00Z"},
  {"url": "https://example.com/", "title": "Example", "timestamp": "2024-01-01T03:00:00Z"},
  {"url": "https://older.example/", "title": "Older", "timestamp": "2023-01-01T03:00:00Z"}])";

TEST(LaunchRestoration, opensTheNewestWebPageOfTheHistoryWithTheAddressReady) {
  TestApplication app;
  app.writeHistory(kHistory);
  app.start();
  app.settleDown();
  ASSERT_EQ(app.panelCount(), 1U);
  EXPECT_THAT(app.pages(), ElementsAre("https://example.com/"));
  EXPECT_TRUE(app.lastPanel().isKey());
  EXPECT_EQ(app.barOf(app.lastPanel()).address, "https://example.com/");
}

TEST(LaunchRestoration, anUnreadableHistoryIsAnEmptyOne) {
  for (const char* history : {"", "{", "{}", "[1]", R"([{"url": "https://example.com/"}])"}) {
    TestApplication app;
    app.writeHistory(history);
    app.start();
    app.settleDown();
    EXPECT_EQ(app.panelCount(), 0U) << history;
  }
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

  app.headless.windowSystem().focus(nullptr);
  app.headless.windowSystem().miniaturizeByHand(second, true);
  app.settleDown();
  const int before = app.headless.windowSystem().activations();
  delegate.applicationShouldHandleReopen(false);
  EXPECT_FALSE(second.isMiniaturized());
  EXPECT_TRUE(second.isKey());
  EXPECT_EQ(app.headless.windowSystem().activations(), before + 1);
}

TEST(LaunchRestoration, aKeyWindowThatIsNoPopOutIsNotRaised) {
  TestApplication app;
  AppDelegate& delegate = app.settle();
  HovrelPanel& panel = app.showWindow("https://one.example/");
  Window other(app.headless.application(), {{0, 0}, {300, 200}}, style_mask::kTitled);
  other.makeKeyAndOrderFront();
  delegate.applicationShouldHandleReopen(true);
  EXPECT_TRUE(panel.isKey());
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

}  // namespace
}  // namespace velto
