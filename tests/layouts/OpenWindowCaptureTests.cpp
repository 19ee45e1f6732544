#include <gmock/gmock.h>

#include "tests/layouts/LayoutsApplication.h"

namespace velto {
namespace {

using test::LayoutsApplication;
using test::screen;
using ::testing::ElementsAre;

TEST(OpenWindowCapture, DescribesTheDisplays) {
  const Rect left{{-1600, 0}, {1600, 1000}};
  const Rect middle{{0, 0}, {1600, 1000}};
  const Rect right{{1600, 0}, {1600, 1000}};
  using Keys = std::vector<std::string>;
  const struct {
    const char* what;
    std::vector<Screen> screens;
    Keys keys;
  } cases[] = {
      {"none", {}, {}},
      {"one that says nothing about itself", {screen("", middle)}, {"name:display:1600x1000"}},
      {"the main one first, then from left to right",
       {screen("M", middle), screen("R", right), screen("L", left, 9)},
       {"name:M:1600x1000", "1552:0:9:1600x1000", "name:R:1600x1000"}},
      {"equal ones are numbered by place, not by rank",
       {screen("T", middle, 1), screen("T", left, 1)},
       {"1552:0:1:1600x1000#2", "1552:0:1:1600x1000#1"}},
      {"and the other way round when they swap places",
       {screen("T", left, 1), screen("T", middle, 1)},
       {"1552:0:1:1600x1000#1", "1552:0:1:1600x1000#2"}},
  };
  for (const auto& c : cases) {
    HeadlessPlatform headless;
    headless.windowSystem().setScreens(c.screens);
    Keys keys;
    int mainOnes = 0;
    for (const auto& display : currentDisplays(headless.application())) {
      keys.push_back(display.key);
      mainOnes += display.isMain ? 1 : 0;
    }
    EXPECT_EQ(keys, c.keys) << c.what;
    EXPECT_EQ(mainOnes, c.screens.empty() ? 0 : 1) << c.what;
  }
}

TEST(OpenWindowCapture, ReadsWhatAWindowIs) {
  LayoutsApplication app;
  app.setScreens({LayoutsApplication::kMain, LayoutsApplication::kRight});
  app.start();
  app.headless.webEngine().setPage("https://a.example/", {.title = "Page A"});
  HovrelPanel& panel =
      app.show("https://a.example/", {.hide = true, .zoom = 1.5, .onTop = true, .noFocus = true});
  panel.setFrame({{1700, 100}, {420, 300}});
  panel.lastKnownScroll = LayoutScroll{3, 40};
  panel.setTitle("Own title");

  const auto displays = currentDisplays(app.headless.application());
  const auto taken = snapshot(panel, displays);
  ASSERT_TRUE(taken);
  EXPECT_NE(taken->id, snapshot(panel, displays)->id);
  WindowSnapshot expected;
  expected.id = taken->id;
  expected.url = "https://a.example/";
  expected.title = "Own title";
  expected.frame = {{1700, 100}, {420, 300}};
  expected.display = displays[1];
  expected.zoom = 1.5;
  expected.chromeless = true;
  expected.pinned = true;
  expected.scroll = LayoutScroll{3, 40};
  expected.noFocus = true;
  EXPECT_EQ(*taken, expected);

  panel.setTitle("");
  EXPECT_EQ(snapshot(panel, displays)->title, "Page A");
  EXPECT_EQ(snapshot(panel, {})->display.key, displays[0].key) << "without a list it is the main display";
}

TEST(OpenWindowCapture, ScrollsAPageThatIsOnItsWayToWhereItWillBe) {
  LayoutsApplication app;
  app.start();
  HovrelPanel& panel = app.show("https://a.example/");
  const auto scroll = [&] { return snapshot(panel, currentDisplays(app.headless.application()))->scroll; };
  panel.lastKnownScroll = LayoutScroll{0, 5};
  EXPECT_EQ(scroll(), (LayoutScroll{0, 5}));
  panel.pendingScrollRestore = LayoutScroll{0, 700};
  EXPECT_EQ(scroll(), (LayoutScroll{0, 700}));
}

TEST(OpenWindowCapture, TitlesAWindowByItsAddressWhenNothingElseHasATitle) {
  LayoutsApplication app;
  app.start();
  for (const auto& [page, title] :
       {std::pair("https://b.example/x", "b.example"), {"file:///tmp/x", "file:///tmp/x"}}) {
    HovrelPanel& panel = app.show(page);
    panel.setTitle("");
    EXPECT_EQ(snapshot(panel, currentDisplays(app.headless.application()))->title, title);
  }
}

TEST(OpenWindowCapture, LeavesOutWhatIsNotCaptured) {
  LayoutsApplication app;
  app.start();
  app.show("https://a.example/");
  app.show("https://private.example/", {.incognito = true});
  app.show("https://b.example/").webView = nullptr;
  app.show("https://c.example/");
  const Application& application = app.headless.application();
  const Window plain(app.headless.application(), {{0, 0}, {100, 100}}, 0);
  const auto pages = [&] {
    std::vector<std::string> urls;
    for (const auto& one : snapshots(application, currentDisplays(application))) urls.push_back(one.url);
    return urls;
  };
  EXPECT_THAT(pages(), ElementsAre("https://a.example/", "https://c.example/"));
  app.setScreens({});
  EXPECT_THAT(pages(), ElementsAre()) << "nowhere to be";
}

TEST(OpenWindowCapture, GivesAWindowOnOneOfTwoEqualDisplaysToTheMainOne) {
  LayoutsApplication app;
  app.setScreens({screen("T", {{0, 0}, {1600, 1000}}, 1), screen("T", {{1600, 0}, {1600, 1000}}, 1)});
  app.start();
  const HovrelPanel& panel = app.show("https://a.example/", Rect{{1700, 100}, {400, 300}});
  const auto displays = currentDisplays(app.headless.application());
  EXPECT_EQ(snapshot(panel, displays)->display.key, "1552:0:1:1600x1000#1");
}

}  // namespace
}  // namespace velto
