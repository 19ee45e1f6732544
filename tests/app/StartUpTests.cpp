#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::CallLog;
using test::TestApplication;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

constexpr const char* kSweep = "handoff: sweep 2024-01-02T03:04:05Z";
constexpr const char* kLeftovers = "import: leftovers";

using Variables = std::vector<std::pair<std::string, std::string>>;

/// The calls of each part of the start, with "|" before the one that the desktop makes next and before what
/// was queued.
CallLog callsOfStart(const Variables& variables) {
  TestApplication app;
  for (const auto& [name, value] : variables) app.headless.environment().variables[name] = value;
  AppDelegate& delegate = app.make();
  delegate.applicationWillFinishLaunching();
  app.log().emplace_back("|");
  EXPECT_TRUE(delegate.applicationOpenUntitledFile());
  delegate.applicationDidFinishLaunching();
  app.log().emplace_back("|");
  app.settleDown();
  app.log().emplace_back("|");
  app.headless.advance(10);
  return app.log();
}

TEST(StartUp, callsEverybodyInOrder) {
  const CallLog ordinary{"layouts: opener",
                         "sessions: load",
                         "history: prepare",
                         kSweep,
                         kLeftovers,
                         "sync: start",
                         "layouts: prepare",
                         "|",
                         "menu: build",
                         "updates: apply",
                         "|",
                         "extension: check",
                         "|",
                         "tool: offer"};
  const CallLog withoutSync{"layouts: opener",
                            "sessions: load",
                            "history: prepare",
                            kSweep,
                            kLeftovers,
                            "layouts: prepare",
                            "|",
                            "menu: build",
                            "updates: apply",
                            "|",
                            "extension: check",
                            "|",
                            "tool: offer"};
  const CallLog testMode{"layouts: opener", "history: prepare", kSweep, kLeftovers, "layouts: prepare", "|",
                         "menu: build",     "updates: apply",   "|",    "|"};
  const CallLog repairTest{"layouts: opener",
                           "history: prepare",
                           kSweep,
                           kLeftovers,
                           "layouts: prepare",
                           "|",
                           "menu: build",
                           "updates: apply",
                           "|",
                           "extension: check",
                           "|"};
  const std::string mode = "HOVREL_UI_TEST_MODE";
  const std::string repair = "VELTO_REPAIR_TEST_DUPLICATES";
  const struct {
    const char* what;
    Variables variables;
    CallLog calls;
  } cases[] = {
      {"an ordinary start", {}, ordinary},
      {"only 1 is the test mode", {{mode, "0"}}, ordinary},
      {"not true either", {{mode, "true"}}, ordinary},
      {"a unit test run", {{"XCTestConfigurationFilePath", ""}}, withoutSync},
      {"the test mode", {{mode, "1"}}, testMode},
      {"the test mode of the repair, whatever the value", {{mode, "1"}, {repair, ""}}, repairTest},
      {"the repair's variable alone changes nothing", {{repair, "1"}}, ordinary},
  };
  for (const auto& c : cases) EXPECT_EQ(callsOfStart(c.variables), c.calls) << c.what;
}

TEST(StartUp, leavesTheStagedCopyToAnImportThatFollows) {
  for (const char* argument :
       {"velto://import-safari", "velto://import-safari?sites=a.com", "velto://open"}) {
    TestApplication app;
    app.headless.environment().arguments = {argument};
    app.start();
    const bool follows = std::string_view(argument) != "velto://open";
    EXPECT_EQ(app.subsystems.countOf("import: leftovers but the staged copy"), follows ? 1 : 0) << argument;
    EXPECT_EQ(app.subsystems.countOf(kLeftovers), follows ? 0 : 1) << argument;
  }
}

TEST(StartUp, readsTheSessionUnlessThePersonDoesNotWantIt) {
  const struct {
    const char* what;
    std::optional<PropertyList> value;
    bool reads;
  } cases[] = {
      {"missing", {}, true},
      {"true", PropertyList(true), true},
      {"false", PropertyList(false), false},
      {"a text", "false", true},
      {"a date", PropertyList(WallTime{}), true},
      {"a list", PropertyList::Array{}, true},
  };
  for (const auto& c : cases) {
    TestApplication app;
    if (c.value) app.headless.defaults().set("restoreWindowsOnLaunch", *c.value);
    app.start();
    EXPECT_EQ(app.subsystems.countOf("sessions: load"), c.reads ? 1 : 0) << c.what;
  }
}

TEST(StartUp, neitherSessionNorHistoryMeansNoWindow) {
  TestApplication app;
  app.headless.defaults().set("restoreWindowsOnLaunch", false);
  app.subsystems.sessionHasWindows = true;
  app.start();
  app.settleDown();
  EXPECT_EQ(app.panelCount(), 0U);
}

TEST(StartUp, offersTheCommandLineToolALittleLater) {
  TestApplication app;
  app.start();
  app.headless.advance(1.19);
  EXPECT_EQ(app.subsystems.countOf("tool: offer"), 0);
  app.headless.advance(0.01);
  EXPECT_EQ(app.subsystems.countOf("tool: offer"), 1);
}

TEST(StartUp, doesNotOfferTheCommandLineToolOverTheRepair) {
  const struct {
    const char* what;
    const char* identifier;
    bool shown;
    int offers;
  } cases[] = {
      {"the repair window is visible", "safari-extension-repair-window", true, 0},
      {"the repair window is not on the screen", "safari-extension-repair-window", false, 1},
      {"another window", "velto-safari-import-window", true, 1},
  };
  for (const auto& c : cases) {
    TestApplication app;
    app.start();
    app.headless.advance(1);
    Window window(app.headless.application(), {{0, 0}, {300, 200}}, style_mask::kTitled);
    window.setIdentifier(c.identifier);
    if (c.shown) window.makeKeyAndOrderFront();
    app.headless.advance(1);
    EXPECT_EQ(app.subsystems.countOf("tool: offer"), c.offers) << c.what;
  }
}

TEST(StartUp, resumesTheImportThatWaitedForAccess) {
  constexpr const char* kKey = "safariImportResumeAfterAccess";
  const struct {
    const char* what;
    double secondsAgo;
    bool testMode;
    bool shows, removed;
  } cases[] = {
      {"just now", 0, false, true, true},
      {"at the last moment", 900, false, true, true},
      {"a second too long ago", 901, false, false, true},
      {"in the future", -1, false, false, true},
      {"in test mode", 10, true, false, false},
  };
  for (const auto& c : cases) {
    TestApplication app;
    if (c.testMode) app.setTestMode();
    app.headless.defaults().set(kKey, WallTime{app.headless.loop().now().secondsSince1970 - c.secondsAgo});
    app.start();
    EXPECT_EQ(!app.headless.defaults().value(kKey), c.removed) << c.what;
    app.headless.advance(0.59);
    EXPECT_THAT(app.log(), Not(Contains("import: show nothing"))) << c.what;
    app.headless.advance(0.01);
    EXPECT_EQ(app.subsystems.countOf("import: show nothing"), c.shows ? 1 : 0) << c.what;
  }
}

TEST(StartUp, leavesAResumeThatIsNoDateAlone) {
  TestApplication app;
  app.headless.defaults().set("safariImportResumeAfterAccess", "yesterday");
  app.start();
  app.headless.advance(10);
  EXPECT_TRUE(app.headless.defaults().value("safariImportResumeAfterAccess"));
  EXPECT_EQ(app.subsystems.countOf("import: show nothing"), 0);
}

TEST(StartUp, delayedStepsFindTheApplicationGone) {
  TestApplication app;
  app.headless.environment().arguments = {"https://example.com/"};
  app.headless.defaults().set("safariImportResumeAfterAccess", app.headless.loop().now());
  app.start();
  app.subsystems.log.clear();
  app.quit();
  app.headless.advance(10);
  EXPECT_THAT(app.log(), ElementsAre());
}

TEST(StartUp, recordsTheSessionForTheLastTimeAtTheEnd) {
  TestApplication app;
  app.settle();
  app.headless.application().terminate();
  app.headless.application().terminate();
  EXPECT_THAT(app.log(), ElementsAre("sessions: finish", "history: finish"));
  EXPECT_TRUE(app.headless.windowSystem().isStopped());
}

TEST(StartUp, staysAliveWithoutWindows) {
  TestApplication app;
  EXPECT_FALSE(app.settle().applicationShouldTerminateAfterLastWindowClosed());
}

}  // namespace
}  // namespace velto
