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

using test::CallLog;
using test::TestApplication;
using test::url;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

constexpr const char* kPlayer = "velto-player://youtube?v=abcdefghijk";

TEST(OpenWindow, hasTheSizeThatWasAskedFor) {
  const auto most = std::numeric_limits<std::int64_t>::max();
  const struct {
    const char* what;
    const char* page;
    std::optional<std::int64_t> width, height;
    Size size;
  } cases[] = {
      {"by default", "https://a.example/", {}, {}, {900, 700}},
      {"a video", kPlayer, {}, {}, {960, 540}},
      {"both", "https://a.example/", 420, 760, {420, 760}},
      {"width alone", "https://a.example/", 420, {}, {420, 700}},
      {"height alone", "https://a.example/", {}, 760, {900, 760}},
      {"a video's width alone", kPlayer, 640, {}, {640, 540}},
      {"larger than the screen", "https://a.example/", 5000, 4000, {5000, 4000}},
      {"below the smallest", "https://a.example/", 0, -7, {25, 25}},
      {"below a video's smallest", kPlayer, 1, 1, {320, 180}},
      {"beyond what a display can hold", "https://a.example/", most, most, {10000, 10000}},
  };
  for (const auto& c : cases) {
    TestApplication app;
    app.settle();
    HovrelPanel& panel = app.openWindow(c.page, {.width = c.width, .height = c.height});
    EXPECT_EQ(panel.frame().size, c.size) << c.what;
    EXPECT_EQ(panel.contentView()->frame(), (Rect{{0, 0}, c.size})) << c.what;
    EXPECT_EQ(panel.webView->frame(), (Rect{{0, 0}, c.size})) << c.what;
  }
}

TEST(OpenWindow, isABorderlessPanelOnAllDesktops) {
  TestApplication app;
  app.settle();
  const HovrelPanel& page = app.openWindow("https://a.example/");
  EXPECT_EQ(page.styleMask(), 0x800FU);
  EXPECT_EQ(page.collectionBehavior(), 0x101U);
  EXPECT_EQ(page.level(), 0);
  EXPECT_EQ(page.identifier(), "hovrel-window");
  EXPECT_TRUE(page.movableByBackground());
  EXPECT_TRUE(page.hasShadow());
  EXPECT_FALSE(page.hasDarkAppearance());
  EXPECT_EQ(page.minSize(), (Size{25, 25}));
  EXPECT_EQ(page.contentAspectRatio(), (Size{0, 0}));

  const HovrelPanel& video = app.openWindow(kPlayer, {.noFocus = true});
  EXPECT_EQ(video.styleMask(), 0x808FU);
  EXPECT_EQ(video.minSize(), (Size{320, 180}));
  EXPECT_EQ(video.contentAspectRatio(), (Size{16, 9}));
}

TEST(OpenWindow, isCalledAfterItsHost) {
  const struct {
    bool testMode;
    const char* page;
    const char* title;
  } cases[] = {
      {false, "https://www.a.example:8080/x", "www.a.example"},
      {false, "http://[::1]:3000/", "::1"},
      {false, "file:///tmp/a.html", "Velto"},
      {false, "about:blank", "Velto"},
      {false, kPlayer, "Velto Video"},
      {false, "VELTO-PLAYER://YouTube?v=abcdefghijk", "Velto Video"},
      {false, "velto-player://other?v=abcdefghijk", "other"},
      {true, "https://a.example/", "hovrel-window"},
      {true, kPlayer, "hovrel-window"},
  };
  for (const auto& c : cases) {
    TestApplication app;
    if (c.testMode) app.setTestMode();
    app.settle();
    EXPECT_EQ(app.openWindow(c.page).title(), c.title) << c.page;
  }
}

TEST(OpenWindow, laysItsViewsOverThePageAndTheyFollowItsSize) {
  TestApplication app;
  app.settle();
  HovrelPanel& panel = app.openWindow("https://a.example/");
  const View& container = *panel.contentView();
  EXPECT_EQ(container.identifier(), "hovrel-container");
  ASSERT_EQ(container.subviews().size(), 4U);
  EXPECT_EQ(container.subviews()[0].get(), panel.webView.get());
  EXPECT_EQ(container.subviews()[0]->identifier(), "hovrel-webview");
  EXPECT_EQ(container.subviews()[1]->identifier(), "chrome");
  EXPECT_EQ(container.subviews()[2].get(), panel.controlBarView.get());
  EXPECT_EQ(container.subviews()[3]->identifier(), "zoom-indicator");

  app.headless.windowSystem().moveByHand(panel, {{10, 20}, {500, 400}});
  EXPECT_EQ(panel.webView->frame(), (Rect{{0, 0}, {500, 400}}));
}

TEST(OpenWindow, startsTheLoadBeforeAnythingIsLaidOverIt) {
  TestApplication app;
  app.settle();
  app.openWindow("https://a.example/", {.x = 5, .y = 5, .hide = true, .zoom = 1.5});
  EXPECT_THAT(app.log(), ElementsAre("engine: makeWebView", "engine: load https://a.example/",
                                     "furniture: chrome", "furniture: bar", "bar: not private",
                                     "bar: collapsed", "furniture: zoom indicator", "bar: zoom 1.5",
                                     "furniture: show zoom 1.5", "sessions: schedule", "sessions: schedule"))
      << "the last two: it was moved to its place, and it is there";
}

TEST(OpenWindow, hasTheSessionRecordedOnceItIsOpen) {
  TestApplication app;
  app.settle();
  bool wasOpen = false;
  app.subsystems.onCall = [&](const std::string& entry) {
    if (entry != "sessions: schedule") return;
    wasOpen = app.panelCount() == 1 && app.lastPanel().isVisible() && app.lastPanel().isPinned;
  };
  app.openWindow("https://a.example/", {.onTop = true});
  EXPECT_TRUE(wasOpen);
}

TEST(OpenWindow, worksWithoutAControlBar) {
  TestApplication app;
  app.setTestMode();
  app.subsystems.makesControlBars = false;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/", {.hide = true, .zoom = 2, .focusAddress = true});
  EXPECT_EQ(panel.webView->pageZoom(), 2);
  EXPECT_THAT(panel.pendingInitialAddress, Optional(std::string("https://a.example/")));
}

TEST(OpenWindow, configuresItsWebView) {
  TestApplication app;
  app.settle();
  const HovrelPanel& panel = app.openWindow("https://a.example/");
  const WebViewConfiguration& configuration = panel.webView->configuration();
  EXPECT_TRUE(configuration.javaScriptCanOpenWindowsAutomatically);
  EXPECT_FALSE(configuration.mediaPlaybackRequiresUserAction);
  EXPECT_TRUE(configuration.allowsAirPlay);
  EXPECT_TRUE(configuration.inspectable);
  EXPECT_TRUE(configuration.allowsBackForwardGestures);
  EXPECT_EQ(configuration.urlSchemeHandlers.count("velto-history"), 1U);
  EXPECT_EQ(
      configuration.userAgent,
      "Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15 (KHTML, like Gecko) Version/17.2 "
      "Safari/605.1.15");
  EXPECT_NE(panel.webView->navigationDelegate(), nullptr);
  EXPECT_NE(panel.webView->uiDelegate(), nullptr);
  EXPECT_EQ(configuration.dataStore, nullptr) << "the engine's own, persistent one";

  const HovrelPanel& other = app.openWindow("https://a.example/");
  EXPECT_NE(other.webView->configuration().userContentController, configuration.userContentController);
  EXPECT_NE(other.webView->configuration().urlSchemeHandlers.at("velto-history"),
            configuration.urlSchemeHandlers.at("velto-history"));
}

TEST(OpenWindow, privateWindowsAreDarkAndForgetful) {
  TestApplication app;
  app.settle();
  const HovrelPanel& one = app.openWindow("https://a.example/", {.incognito = true});
  const HovrelPanel& two = app.openWindow("https://a.example/", {.incognito = true});
  for (const HovrelPanel* panel : {&one, &two}) {
    EXPECT_TRUE(panel->isPrivate);
    EXPECT_TRUE(panel->hasDarkAppearance());
    ASSERT_NE(panel->webView->configuration().dataStore, nullptr);
    EXPECT_FALSE(panel->webView->configuration().dataStore->isPersistent());
  }
  EXPECT_NE(one.webView->configuration().dataStore, two.webView->configuration().dataStore);
  EXPECT_EQ(app.subsystems.countOf("bar: private"), 2);
}

TEST(OpenWindow, aGivenStoreIsForPrivateWindowsOnly) {
  TestApplication app;
  app.settle();
  const auto store = app.headless.webEngine().makeNonPersistentDataStore();
  const HovrelPanel& sharing = app.openWindow("https://a.example/", {.incognito = true, .dataStore = store});
  EXPECT_EQ(sharing.webView->configuration().dataStore, store);
  const HovrelPanel& ordinary = app.openWindow("https://a.example/", {.dataStore = store});
  EXPECT_EQ(ordinary.webView->configuration().dataStore, nullptr);
}

TEST(OpenWindow, aVideoIsLoadedByThePlayer) {
  TestApplication app;
  app.settle();
  app.openWindow(kPlayer);
  ASSERT_GE(app.log().size(), 4U);
  EXPECT_THAT(
      CallLog(app.log().begin(), app.log().begin() + 4),
      ElementsAre("engine: makeWebView", std::string("player: ") + kPlayer,
                  "engine: loadHtml https://player.example/player?v=abcdefghijk", "furniture: chrome"));
}

TEST(OpenWindow, clampsTheZoom) {
  const struct {
    double asked, zoom;
  } cases[] = {{1.5, 1.5}, {0.1, 0.25}, {-1, 0.25}, {9, 3}, {3, 3}, {0.25, 0.25}};
  for (const auto& c : cases) {
    TestApplication app;
    app.settle();
    EXPECT_EQ(app.openWindow("https://a.example/", {.zoom = c.asked}).webView->pageZoom(), c.zoom);
    EXPECT_EQ(app.subsystems.countOf("bar: zoom " + test::textOf(c.zoom)), 1) << c.asked;
    EXPECT_EQ(app.subsystems.countOf("furniture: show zoom " + test::textOf(c.zoom)), 1) << c.asked;
  }
}

TEST(OpenWindow, remembersWhereToScroll) {
  const struct {
    std::optional<LayoutScroll> asked, pending;
  } cases[] = {{{}, {}},
               {LayoutScroll{0, 0}, {}},
               {LayoutScroll{0, 5}, LayoutScroll{0, 5}},
               {LayoutScroll{5, 0}, LayoutScroll{5, 0}}};
  for (const auto& c : cases) {
    TestApplication app;
    app.settle();
    EXPECT_EQ(app.openWindow("https://a.example/", {.scroll = c.asked}).pendingScrollRestore, c.pending);
  }
}

TEST(OpenWindow, testModeForcesTheBarOpen) {
  TestApplication app;
  app.setTestMode();
  app.settle();
  app.openWindow("https://a.example/", {.hide = true});
  EXPECT_LT(test::positionOf(app.log(), "bar: collapsed"), test::positionOf(app.log(), "bar: not collapsed"));
  EXPECT_EQ(app.subsystems.countOf("bar: force expanded"), 1);

  TestApplication ordinary;
  ordinary.settle();
  ordinary.openWindow("https://a.example/", {.hide = true});
  EXPECT_EQ(
      ordinary.subsystems.countOf("bar: not collapsed") + ordinary.subsystems.countOf("bar: force expanded"),
      0);
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

}  // namespace
}  // namespace velto
