#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;
using ::testing::ElementsAre;

constexpr const char* kPlayer = "velto-player://youtube?v=abcdefghijk";

class OpenWindowTest : public ::testing::Test {
 protected:
  TestApplication app;
  AppDelegate& delegate = app.settle();
};

TEST(OpenWindow, hasTheSizeThatWasAskedFor) {
  const auto most = std::numeric_limits<std::int64_t>::max();
  const struct {
    const char* what;
    const char* page;
    std::optional<std::int64_t> width, height;
    Size size;
  } cases[] = {
      {"width alone", "https://a.example/", 420, {}, {420, 700}},
      {"a video's width alone", kPlayer, 640, {}, {640, 540}},
      {"below the smallest", "https://a.example/", 0, -7, {25, 25}},
      {"below a video's smallest", kPlayer, 1, 1, {320, 180}},
      {"beyond what a display can hold", "https://a.example/", most, most, {10000, 10000}},
  };
  for (const auto& c : cases) {
    TestApplication app;
    app.settle();
    HovrelPanel& panel = app.openWindow(c.page, {.width = c.width, .height = c.height});
    EXPECT_EQ(panel.frame().size, c.size) << c.what;
    EXPECT_EQ(panel.webView->frame(), (Rect{{0, 0}, c.size})) << c.what;
  }
}

TEST(OpenWindow, isCalledAfterItsHost) {
  const struct {
    bool testMode;
    const char* page;
    const char* title;
  } cases[] = {
      {false, "https://www.a.example:8080/x", "www.a.example"},
      {false, "file:///tmp/a.html", "Velto"},
      {false, kPlayer, "Velto Video"},
      {true, kPlayer, "hovrel-window"},
  };
  for (const auto& c : cases) {
    TestApplication app;
    if (c.testMode) app.setTestMode();
    app.settle();
    EXPECT_EQ(app.openWindow(c.page).title(), c.title) << c.page;
  }
}

TEST_F(OpenWindowTest, isMovableAndItsPageFollowsItsSize) {
  HovrelPanel& panel = app.openWindow("https://a.example/");
  EXPECT_TRUE(panel.movableByBackground());
  EXPECT_EQ(panel.contentView()->subviews().front().get(), panel.webView.get()) << "below all else";
  app.headless.windowSystem().moveByHand(panel, {{10, 20}, {500, 400}});
  EXPECT_EQ(panel.webView->frame(), (Rect{{0, 0}, {500, 400}}));
}

TEST_F(OpenWindowTest, startsTheLoadBeforeAnythingIsLaidOverIt) {
  app.openWindow("https://a.example/", {.x = 5, .y = 5, .hide = true, .zoom = 9});
  EXPECT_THAT(app.log(), ElementsAre("engine: makeWebView", "engine: load https://a.example/",
                                     "furniture: chrome", "furniture: bar", "bar: not private",
                                     "bar: collapsed", "furniture: zoom indicator", "bar: zoom 3",
                                     "furniture: show zoom 3", "sessions: schedule", "sessions: schedule"))
      << "the last two: it was moved to its place, and it is there";
}

TEST_F(OpenWindowTest, sharesNothingWithOtherWindowsButTheStore) {
  const auto& one = app.openWindow("https://a.example/").webView->configuration();
  const auto& two = app.openWindow("https://a.example/").webView->configuration();
  EXPECT_TRUE(one.javaScriptCanOpenWindowsAutomatically);
  EXPECT_FALSE(one.mediaPlaybackRequiresUserAction);
  EXPECT_EQ(one.dataStore, nullptr) << "the engine's own, persistent one";
  EXPECT_NE(one.userContentController, two.userContentController);
  EXPECT_NE(one.urlSchemeHandlers.at("velto-history"), two.urlSchemeHandlers.at("velto-history"));
}

TEST_F(OpenWindowTest, privateWindowsAreDarkAndForgetful) {
  const HovrelPanel& one = app.openWindow("https://a.example/", {.incognito = true});
  const HovrelPanel& two = app.openWindow("https://a.example/", {.incognito = true});
  const auto store = one.webView->configuration().dataStore;
  ASSERT_NE(store, nullptr);
  EXPECT_FALSE(store->isPersistent());
  EXPECT_NE(two.webView->configuration().dataStore, store);
  EXPECT_TRUE(one.isPrivate);
  EXPECT_TRUE(one.hasDarkAppearance());
  EXPECT_EQ(app.subsystems.countOf("bar: private"), 2);

  const HovrelPanel& sharing = app.openWindow("https://a.example/", {.incognito = true, .dataStore = store});
  EXPECT_EQ(sharing.webView->configuration().dataStore, store);
  const HovrelPanel& ordinary = app.openWindow("https://a.example/", {.dataStore = store});
  EXPECT_EQ(ordinary.webView->configuration().dataStore, nullptr) << "only a private window takes one";
}

TEST(OpenWindow, testModeForcesTheBarOpen) {
  TestApplication app;
  app.setTestMode();
  app.settle();
  app.openWindow("https://a.example/", {.hide = true});
  EXPECT_LT(test::positionOf(app.log(), "bar: collapsed"), test::positionOf(app.log(), "bar: not collapsed"));
  EXPECT_EQ(app.subsystems.countOf("bar: force expanded"), 1);
}

TEST(OpenWindow, testModeKeepsWhatTheBarRemembersApart) {
  TestApplication app;
  app.setTestMode();
  const Platform& platform = app.headless.platform();
  const auto suite = platform.environment.preferencesDirectory /
                     ("Velto.VisibleUITests." + std::to_string(platform.environment.processId) + ".plist");
  UserDefaults(platform.files, suite).set("left over", true);
  app.settle();
  app.openWindow("https://a.example/");
  const UserDefaults kept(platform.files, suite);
  EXPECT_EQ(kept.boolean("bar"), true);
  EXPECT_FALSE(kept.value("left over"));
  EXPECT_FALSE(platform.defaults.value("bar"));
}

constexpr const char* kHistory =
    R"([{"url": "https://last.example/", "title": "", "timestamp": "2024-01-01T00:00:00Z"}])";

TEST(NewWindow, takesThePageOfTheKeyWindow) {
  const struct {
    const char* what;
    const char* keyPage;  // null: no key window
    bool history;
    bool incognito;
    const char* opened;
    bool addressReady;
  } cases[] = {
      {"a web page", "https://a.example/x", true, false, "https://a.example/x", false},
      {"any other page", "velto-history://history/", true, false, "velto-history://history/", false},
      {"no key window", nullptr, true, false, "https://last.example/", false},
      {"nothing at all", nullptr, false, false, "about:blank", true},
      {"private: a web page", "http://a.example/x", true, true, "http://a.example/x", false},
      {"private: any other page", "velto-history://history/", true, true, "about:blank", true},
  };
  for (const auto& c : cases) {
    TestApplication app;
    AppDelegate& delegate = app.settle();
    app.subsystems.barsTakeAddresses = false;
    if (c.history) app.writeHistory(kHistory);
    if (c.keyPage != nullptr) app.showWindow(c.keyPage);
    const std::size_t before = app.panelCount();
    if (c.incognito) {
      delegate.newPrivateWindow();
    } else {
      delegate.newWindow();
    }
    app.settleDown();
    ASSERT_EQ(app.panelCount(), before + 1) << c.what;
    const HovrelPanel& panel = app.lastPanel();
    EXPECT_EQ(app.pages().back(), c.opened) << c.what;
    EXPECT_EQ(panel.pendingInitialAddress.has_value(), c.addressReady) << c.what;
    EXPECT_EQ(panel.isPrivate, c.incognito) << c.what;
    EXPECT_TRUE(panel.isKey()) << c.what;
  }
}

TEST_F(OpenWindowTest, newWindowsStepAwayFromTheKeyWindow) {
  const Point from = app.showWindow("https://a.example/", {.width = 400, .x = 100, .y = 100}).frame().origin;
  delegate.newWindow();
  EXPECT_EQ(app.lastPanel().frame().origin, (Point{from.x + 24, from.y - 24}));
  delegate.newPrivateWindow();
  EXPECT_EQ(app.lastPanel().frame().origin, (Point{from.x + 48, from.y - 48}));
}

Screen screen(int number, const Rect& frame, const Rect& visible) {
  Screen made;
  made.number = number;
  made.frame = frame;
  made.visibleFrame = visible;
  return made;
}

const Screen kMain = screen(1, {{0, 0}, {1920, 1080}}, {{0, 0}, {1920, 1053}});
const Screen kRight = screen(2, {{1920, 0}, {1280, 1024}}, {{1920, 40}, {1280, 984}});

TEST(WindowPlacement, takesTheScreenThatIsMeant) {
  const std::vector<Screen> both{kMain, kRight};
  constexpr Rect kOnTheRight{{2900, 50}, {300, 200}};
  const struct {
    const char* what;
    std::vector<Screen> screens;
    std::optional<Screen> target;
    std::optional<Rect> reference;
    std::optional<std::int64_t> x;
    Point origin;
  } cases[] = {
      {"the main screen", both, {}, {}, 40, {40, 753}},
      {"the target screen", both, kRight, {}, 40, {1960, 724}},
      {"a screen that has just gone", {}, kRight, {}, 40, {1960, 724}},
      {"no screen at all", {}, {}, {}, 40, {0, 0}},
      {"nothing asked for", {kMain}, {}, {}, {}, {760, 502}},
      {"beside a window, held on its screen", both, {}, kOnTheRight, {}, {2800, 40}},
      {"a place counts more than a window", both, {}, kOnTheRight, 7, {7, 753}},
      {"beside a window without a screen", {}, {}, kOnTheRight, {}, {0, 0}},
  };
  for (const auto& c : cases) {
    TestApplication app;
    app.settle();
    std::optional<Window> reference;
    if (c.reference) reference.emplace(app.headless.application(), *c.reference, style_mask::kTitled);
    app.headless.windowSystem().setScreens(c.screens);
    WindowOptions options{.width = 400, .height = 300, .x = c.x, .targetScreen = c.target};
    if (reference) options.referenceWindow = &*reference;
    const HovrelPanel& panel = app.showWindow("https://a.example/", options);
    EXPECT_EQ(panel.frame(), (Rect{c.origin, {400, 300}})) << c.what;
  }
}

TEST_F(OpenWindowTest, isPlacedBeforeItIsShown) {
  std::vector<Rect> frames;
  app.subsystems.onCall = [&](const std::string& entry) {
    if (entry == "sessions: schedule") {
      for (const Window* window : app.headless.application().windows()) {
        EXPECT_EQ(window->isVisible(), !frames.empty()) << "moved first, shown second";
        frames.push_back(window->frame());
      }
    }
  };
  app.showWindow("https://a.example/", {.width = 400, .height = 300, .x = 0, .y = 0});
  ASSERT_EQ(frames.size(), 2U);
  EXPECT_EQ(frames[0], frames[1]);
}

TEST_F(OpenWindowTest, theAddressIsReadyForTypingAsSoonAsTheBarTakesIt) {
  HovrelPanel& panel = app.openWindow("https://a.example/", {.focusAddress = true});
  EXPECT_FALSE(panel.pendingInitialAddress) << "already while it opens";
  app.settleDown();
  EXPECT_EQ(app.subsystems.countOf("bar: address \"https://a.example/\""), 1) << "not again";
}

TEST(WindowFocus, theAddressWaitsUntilTheBarTakesIt) {
  TestApplication app;
  app.subsystems.barsTakeAddresses = false;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/", {.focusAddress = true});
  app.headless.windowSystem().focus(nullptr);
  app.barOf(panel).takesAddress = true;
  EXPECT_TRUE(panel.pendingInitialAddress);
  app.headless.windowSystem().focus(&panel);
  EXPECT_FALSE(panel.pendingInitialAddress) << "the application became active";
}

TEST(WindowFocus, theAddressIsTriedOnceMoreInTheNextTurn) {
  TestApplication app;
  app.subsystems.barsTakeAddresses = false;
  app.settle();
  HovrelPanel& panel = app.openWindow("https://a.example/", {.focusAddress = true});
  app.barOf(panel).takesAddress = true;
  app.settleDown();
  EXPECT_FALSE(panel.pendingInitialAddress);
}

TEST_F(OpenWindowTest, anInactiveWindowKeepsItsAddressForLater) {
  HovrelPanel& panel = app.showWindow("https://a.example/", {.focusAddress = true, .activate = false});
  Window other(app.headless.application(), {{0, 0}, {300, 200}}, style_mask::kTitled);
  other.makeKeyAndOrderFront();
  EXPECT_TRUE(panel.pendingInitialAddress) << "another window made the application active";
  EXPECT_FALSE(app.barOf(panel).address);
  app.headless.windowSystem().focus(nullptr);
  app.headless.windowSystem().focus(&panel);
  EXPECT_FALSE(panel.pendingInitialAddress);
}

TEST(WindowFocus, theWindowMayBeGoneBeforeTheNextTurn) {
  TestApplication app;
  app.subsystems.barsTakeAddresses = false;
  app.settle();
  app.openWindow("https://a.example/", {.focusAddress = true});
  app.quit();
  app.settleDown();
  EXPECT_EQ(app.subsystems.countOf("bar: address \"https://a.example/\""), 2)
      << "on becoming key and on activation";
}

}  // namespace
}  // namespace velto
