#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::CallLog;
using test::TestApplication;
using ::testing::ElementsAre;

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
  const std::string mode = "HOVREL_UI_TEST_MODE";
  const std::string repair = "VELTO_REPAIR_TEST_DUPLICATES";
  const struct {
    const char* what;
    Variables variables;
    CallLog leftOut;
  } cases[] = {
      {"an ordinary start", {}, {}},
      {"only 1 is the test mode", {{mode, "0"}}, {}},
      {"a unit test run", {{"XCTestConfigurationFilePath", ""}}, {"sync: start"}},
      {"test mode", {{mode, "1"}}, {"sessions: load", "sync: start", "extension: check", "tool: offer"}},
      {"the repair's test mode",
       {{mode, "1"}, {repair, ""}},
       {"sessions: load", "sync: start", "tool: offer"}},
      {"the repair's variable alone", {{repair, "1"}}, {}},
  };
  for (const auto& c : cases) {
    CallLog calls{"layouts: opener",
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
    for (const std::string& each : c.leftOut) std::erase(calls, each);
    EXPECT_EQ(callsOfStart(c.variables), calls) << c.what;
  }
}

TEST(StartUp, leavesTheStagedCopyToAnImportThatFollows) {
  for (const bool follows : {true, false}) {
    TestApplication app;
    app.headless.environment().arguments = {follows ? "velto://import-safari?sites=a.com" : "velto://open"};
    app.start();
    EXPECT_EQ(app.subsystems.countOf("import: leftovers but the staged copy"), follows ? 1 : 0);
    EXPECT_EQ(app.subsystems.countOf(kLeftovers), follows ? 0 : 1);
  }
}

TEST(StartUp, readsTheSessionUnlessThePersonDoesNotWantIt) {
  const std::pair<std::optional<PropertyList>, int> cases[] = {
      {{}, 1}, {PropertyList(false), 0}, {"false", 1}};
  for (const auto& [value, reads] : cases) {
    TestApplication app;
    if (value) app.headless.defaults().set("restoreWindowsOnLaunch", *value);
    app.start();
    EXPECT_EQ(app.subsystems.countOf("sessions: load"), reads);
  }
}

TEST(StartUp, doesNotOfferTheCommandLineToolOverTheRepair) {
  for (const bool shown : {true, false}) {
    TestApplication app;
    app.start();
    Window window(app.headless.application(), {{0, 0}, {300, 200}}, style_mask::kTitled);
    window.setIdentifier("safari-extension-repair-window");
    if (shown) window.makeKeyAndOrderFront();
    app.headless.advance(2);
    EXPECT_EQ(app.subsystems.countOf("tool: offer"), shown ? 0 : 1);
  }
}

TEST(StartUp, resumesTheImportThatWaitedForAccess) {
  constexpr const char* kKey = "safariImportResumeAfterAccess";
  TestApplication clock;
  const auto ago = [now = clock.headless.loop().now().secondsSince1970](double seconds) {
    return PropertyList(WallTime{now - seconds});
  };
  const struct {
    const char* what;
    PropertyList asked;
    bool testMode;
    bool shows, removed;
  } cases[] = {
      {"at the last moment", ago(900), false, true, true}, {"too long ago", ago(901), false, false, true},
      {"in the future", ago(-1), false, false, true},      {"in test mode", ago(10), true, false, false},
      {"no date", "yesterday", false, false, false},
  };
  for (const auto& c : cases) {
    TestApplication app;
    if (c.testMode) app.setTestMode();
    app.headless.defaults().set(kKey, c.asked);
    app.start();
    EXPECT_EQ(!app.headless.defaults().value(kKey), c.removed) << c.what;
    app.headless.advance(10);
    EXPECT_EQ(app.subsystems.countOf("import: show nothing"), c.shows ? 1 : 0) << c.what;
  }
}

TEST(StartUp, delayedStepsFindTheApplicationGone) {
  TestApplication app;
  app.headless.environment().arguments = {"https://example.com/"};
  app.headless.defaults().set("safariImportResumeAfterAccess", app.headless.loop().now());
  app.start().applicationOpenURLs(
      {test::url("velto://history"), test::url("velto://open?url=https://a.example/")});
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
