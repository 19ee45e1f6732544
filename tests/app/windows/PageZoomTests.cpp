#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(PageZoom, stepsWithinItsLimits) {
  using Command = void (AppDelegate::*)();
  const struct {
    Command command;
    double from, to;
  } cases[] = {
      {&AppDelegate::zoomIn, 1, 1.1},      {&AppDelegate::zoomIn, 2.95, 3},
      {&AppDelegate::zoomIn, 3, 3},        {&AppDelegate::zoomIn, 0.25, 0.35},
      {&AppDelegate::zoomOut, 1, 0.9},     {&AppDelegate::zoomOut, 0.3, 0.25},
      {&AppDelegate::zoomOut, 0.35, 0.25}, {&AppDelegate::zoomOut, 0.25, 0.25},
      {&AppDelegate::zoomOut, 3, 2.9},     {&AppDelegate::resetZoom, 2.5, 1},
      {&AppDelegate::resetZoom, 1, 1},
  };
  for (const auto& c : cases) {
    TestApplication app;
    AppDelegate& delegate = app.settle();
    const HovrelPanel& panel = app.showWindow("https://a.example/", {.zoom = c.from});
    app.subsystems.log.clear();
    (delegate.*c.command)();
    EXPECT_NEAR(panel.webView->pageZoom(), c.to, 1e-12) << c.from;
    EXPECT_THAT(app.log(),
                ElementsAre("bar: zoom " + test::textOf(c.to), "furniture: show zoom " + test::textOf(c.to)));
  }
}

TEST(PageZoom, reachesTheEndsAndComesBack) {
  TestApplication app;
  AppDelegate& delegate = app.settle();
  const HovrelPanel& panel = app.showWindow("https://a.example/");
  for (int i = 0; i < 30; ++i) delegate.zoomIn();
  EXPECT_EQ(panel.webView->pageZoom(), 3);
  for (int i = 0; i < 40; ++i) delegate.zoomOut();
  EXPECT_EQ(panel.webView->pageZoom(), 0.25);
}

TEST(PageZoom, isForTheKeyWindowAlone) {
  TestApplication app;
  AppDelegate& delegate = app.settle();
  delegate.zoomIn();
  const HovrelPanel& first = app.showWindow("https://a.example/");
  const HovrelPanel& second = app.showWindow("https://b.example/");
  delegate.zoomIn();
  EXPECT_EQ(first.webView->pageZoom(), 1);
  EXPECT_NE(second.webView->pageZoom(), 1);

  app.headless.windowSystem().focus(nullptr);
  app.subsystems.log.clear();
  delegate.resetZoom();
  EXPECT_THAT(app.log(), IsEmpty());
}

TEST(PageZoom, worksWithoutAControlBar) {
  TestApplication app;
  app.subsystems.makesControlBars = false;
  AppDelegate& delegate = app.settle();
  const HovrelPanel& panel = app.showWindow("https://a.example/");
  delegate.zoomOut();
  EXPECT_NEAR(panel.webView->pageZoom(), 0.9, 1e-12);
}

}  // namespace
}  // namespace velto
