#include <gmock/gmock.h>

#include "tests/layouts/LayoutsApplication.h"

namespace velto {
namespace {

using test::LayoutsApplication;
using ::testing::ElementsAre;

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

  EXPECT_TRUE(displays[0].isMain && !displays[1].isMain);
  EXPECT_EQ(snapshot(panel, {})->display.key, displays[0].key) << "without a list it is the main display";

  panel.setTitle("");
  EXPECT_EQ(snapshot(panel, displays)->title, "Page A");
  panel.pendingScrollRestore = LayoutScroll{0, 700};
  EXPECT_EQ(snapshot(panel, displays)->scroll, (LayoutScroll{0, 700})) << "where the page will be";
  for (const auto& [page, title] :
       {std::pair("https://b.example/x", "b.example"), {"file:///tmp/x", "file:///tmp/x"}}) {
    HovrelPanel& untitled = app.show(page);
    untitled.setTitle("");
    EXPECT_EQ(snapshot(untitled, displays)->title, title);
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

}  // namespace
}  // namespace velto
