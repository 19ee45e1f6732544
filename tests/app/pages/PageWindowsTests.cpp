#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/pages/PageWindows.h"
#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;
using test::url;
using ::testing::ElementsAre;

TEST(PageWindows, arePagesAndNothingElse) {
  for (const char* target : {"http://b.example/", "HTTPS://b.example/", "about:blank", "about:blank#x"}) {
    EXPECT_TRUE(mayPageOpen(url(target))) << target;
  }
  for (const char* target : {"file:///etc/passwd", "FILE:///tmp/b.html", "javascript:alert(1)",
                             "data:text/html,x", "velto://open?url=a", "about:config", "velto-history:all",
                             "velto-player:x", "blob:https://a.example/1"}) {
    EXPECT_FALSE(mayPageOpen(url(target))) << target;
  }
}

class PageWindowsTest : public ::testing::Test {
 protected:
  PageWindowsTest() { app_.settle(); }

  void open(const HovrelPanel& panel, bool isUserGesture, int times = 1) {
    if (isUserGesture) touch(panel);
    PageWindowRequest request;
    request.url = url("https://popup.example/");
    request.isUserGesture = isUserGesture;
    for (int i = 0; i < times; ++i) TestApplication::pageOf(panel).openWindow(request);
    app_.settleDown();
  }
  /// The person clicks in the page, some time after the last time.
  void touch(const HovrelPanel& panel) {
    app_.headless.advance(0.001);
    TestApplication::pageOf(panel).mouseDown({});
  }
  std::size_t windows() { return app_.panelCount(); }
  std::vector<std::string> refusals() {
    std::vector<std::string> lines;
    std::istringstream text(app_.headless.files().read("/home/p/Documents/urlbar_debug.txt"));
    for (std::string line; std::getline(text, line);) {
      const auto at = line.find("refused ");
      if (at != std::string::npos) lines.push_back(line.substr(at));
    }
    return lines;
  }

  TestApplication app_;
};

TEST_F(PageWindowsTest, areOpenedAsAsked) {
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  const struct {
    std::optional<double> width, height;
    Size size;
  } cases[] = {
      {300, 200, {300, 200}}, {300.9, {}, {300, 700}},
      {{}, 200, {900, 200}},  {kInfinite, std::numeric_limits<double>::quiet_NaN(), {900, 700}},
      {-5, 0, {25, 25}},
  };
  HovrelPanel& panel = app_.showWindow("https://a.example/");
  for (const auto& c : cases) {
    TestApplication::pageOf(panel).openWindow({url("https://b.example/"), c.width, c.height, true});
    app_.settleDown();
    EXPECT_EQ(app_.lastPanel().frame().size, c.size);
    EXPECT_EQ(app_.headless.application().keyWindow(), &app_.lastPanel());
  }
  const std::size_t before = windows();
  TestApplication::pageOf(panel).openWindow({std::nullopt, 300, 300, true});
  app_.settleDown();
  EXPECT_EQ(windows(), before) << "no address, no window";
}

TEST_F(PageWindowsTest, shareThePrivateStoreOfTheirOpener) {
  HovrelPanel& panel = app_.showWindow("https://a.example/", {.incognito = true});
  open(panel, true);
  ASSERT_EQ(windows(), 2U);
  EXPECT_TRUE(app_.lastPanel().isPrivate);
  EXPECT_EQ(app_.lastPanel().webView->configuration().dataStore, panel.webView->configuration().dataStore);
}

TEST_F(PageWindowsTest, areFewWithoutAClick) {
  HovrelPanel& panel = app_.showWindow("https://a.example/");
  open(panel, false, 100);
  EXPECT_EQ(windows(), 6U);
  HovrelPanel& unasked = app_.lastPanel();
  open(unasked, false, 100);
  EXPECT_EQ(windows(), 6U) << "nobody asked for that one";
  touch(unasked);
  open(unasked, false);
  EXPECT_EQ(windows(), 7U) << "now the person has to do with it";
  open(panel, true);
  EXPECT_EQ(windows(), 8U) << "a click may";
  open(app_.lastPanel(), false);
  EXPECT_EQ(windows(), 9U);
  open(panel, false, 100);
  EXPECT_EQ(windows(), 14U) << "the click gave some more";
}

TEST_F(PageWindowsTest, areAHandfulForOneClick) {
  HovrelPanel& panel = app_.showWindow("https://a.example/");
  open(panel, true, 30);
  EXPECT_EQ(windows(), 11U) << "five for the click and five that count as unasked";
  open(app_.panel(5), false);
  EXPECT_EQ(windows(), 12U);
  open(app_.panel(6), false);
  EXPECT_EQ(windows(), 12U) << "this one was too much for one click";
}

TEST_F(PageWindowsTest, areFewAtATimeEvenWithClicks) {
  HovrelPanel& panel = app_.showWindow("https://a.example/");
  for (int i = 0; i < 30; ++i) open(panel, true);
  EXPECT_EQ(windows(), 21U);
  app_.headless.advance(9.8);
  open(panel, true);
  EXPECT_EQ(windows(), 21U);
  app_.headless.advance(0.2);
  open(panel, true);
  EXPECT_EQ(windows(), 22U);
}

TEST_F(PageWindowsTest, refusedByAPrivatePageDoNotTellOfIt) {
  open(app_.showWindow("https://a.example/", {.incognito = true}), false, 6);
  EXPECT_THAT(refusals(), ElementsAre("refused 1 windows, the last one from (private)"));
}

TEST_F(PageWindowsTest, refusedAreCountedOncePerSecond) {
  HovrelPanel& panel = app_.showWindow("https://a.example/");
  open(panel, false, 1005);
  EXPECT_THAT(refusals(), ElementsAre("refused 1 windows, the last one from https://a.example/"));
  app_.headless.advance(1);
  app_.headless.advance(60);
  EXPECT_THAT(refusals(), ElementsAre("refused 1 windows, the last one from https://a.example/",
                                      "refused 999 windows, the last one from https://a.example/"));
}

TEST_F(PageWindowsTest, areNotOpenedByAWindowThatCloses) {
  ScriptedPage asks;
  asks.beforeUnload = true;
  app_.headless.webEngine().setPage("https://a.example/", asks);
  HovrelPanel& panel = app_.showWindow("https://a.example/");
  panel.close();
  app_.settleDown();
  open(panel, true);
  EXPECT_EQ(windows(), 1U);
  app_.headless.windowSystem().answerAlert("Leave Page");
  app_.settleDown();
}

}  // namespace
}  // namespace velto
