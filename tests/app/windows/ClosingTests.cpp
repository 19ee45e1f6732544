#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;
using ::testing::ElementsAre;

constexpr const char* kPage = "https://a.example/";

/// An application with one window on a page that asks before it is left.
class ClosingTest : public ::testing::Test {
 protected:
  ClosingTest() {
    ScriptedPage page;
    page.beforeUnload = true;
    app_.headless.webEngine().setPage(kPage, page);
    app_.settle();
    panel_ = app_.showWindow(kPage);
    app_.subsystems.log.clear();
  }

  void close() {
    panel_->close();
    app_.settleDown();
  }
  void answer(const char* button) {
    app_.headless.windowSystem().answerAlert(button);
    app_.settleDown();
  }
  [[nodiscard]] std::size_t questions() { return app_.headless.windowSystem().alerts().size(); }
  [[nodiscard]] bool isOpen() { return panel_ && app_.panelCount() == 1 && panel_->isVisible(); }

  TestApplication app_;
  WeakPtr<HovrelPanel> panel_;
};

TEST_F(ClosingTest, thePersonMayStayAndIsAskedAgain) {
  for (int i = 0; i < 3; ++i) {
    close();
    ASSERT_EQ(questions(), 1U);
    EXPECT_TRUE(isOpen()) << "it waits for the answer";
    EXPECT_EQ(app_.headless.windowSystem().alerts().front().informativeText,
              "From “a.example”: changes you made may not be saved.")
        << "it names the page that is left, not the empty one that is loading";
    answer("Stay on Page");
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(panel_->webView->url()->absoluteString(), kPage);
  }
  close();
  answer("Leave Page");
  EXPECT_FALSE(panel_);
  EXPECT_EQ(app_.panelCount(), 0U);
}

TEST_F(ClosingTest, closingAgainWhileItIsAskedAsksAndClosesOnce) {
  const auto closeTwice = [this] {
    close();
    close();
    EXPECT_EQ(questions(), 1U);
  };
  closeTwice();
  answer("Stay on Page");
  EXPECT_EQ(questions(), 0U);
  EXPECT_TRUE(isOpen());
  closeTwice();
  answer("Leave Page");
  EXPECT_FALSE(panel_) << "nothing is left over from before";
  EXPECT_EQ(app_.subsystems.countOf("sessions: schedule"), 1);
}

TEST_F(ClosingTest, anotherNavigationDoesNotCloseTheWindow) {
  close();
  answer("Stay on Page");
  app_.pageOf(*panel_).clickLink("about:blank");
  app_.settleDown();
  answer("Leave Page");
  EXPECT_TRUE(isOpen());
}

TEST_F(ClosingTest, aPageThatHangsOrDiesHasNoSay) {
  const struct {
    const char* what;
    bool asked, dies;
  } cases[] = {
      {"it hangs", false, false},
      {"it hangs while it is asked", true, false},
      {"it died", false, true},
      {"it dies while it is asked", true, true},
  };
  for (const auto& c : cases) {
    if (!panel_) panel_ = app_.showWindow(kPage);
    app_.subsystems.log.clear();
    if (c.asked) close();
    if (c.dies) {
      app_.pageOf(*panel_).crash();
    } else {
      app_.pageOf(*panel_).setResponsive(false);
    }
    if (c.asked) {
      app_.settleDown();
      EXPECT_EQ(app_.subsystems.countOf(std::string("engine: loadSubstitute ") + kPage), 0) << c.what;
    } else {
      close();
    }
    EXPECT_FALSE(panel_) << c.what;
    EXPECT_EQ(questions(), 0U) << c.what;
  }
}

TEST_F(ClosingTest, oneThatStayedIsNotClosedByWhatItsPageDoesLater) {
  close();
  answer("Stay on Page");
  app_.pageOf(*panel_).setResponsive(false);
  app_.settleDown();
  app_.pageOf(*panel_).crash();
  app_.settleDown();
  EXPECT_TRUE(isOpen());
}

TEST(Closing, aConsentIsForOneNavigationAndOneClose) {
  TestApplication app;
  OpenWindows windows(app.headless.application());
  PageQuestions questions(app.headless.application());
  WindowLife life(windows, questions, app.subsystems.services().sessions, app.headless.loop());
  HovrelPanel panel(app.headless.application(), {{0, 0}, {300, 200}}, style_mask::kTitled);
  auto container = std::make_unique<View>();
  WebView& page = container->addSubview(app.headless.webEngine().makeWebView({}, {}));
  panel.setContentView(std::move(container));
  panel.setDelegate(life);
  const auto earlier = page.load({test::url(kPage)});
  panel.close();
  EXPECT_FALSE(life.finishPendingClose(page, *earlier));
  EXPECT_FALSE(life.abandonPendingClose(page, *earlier));
  EXPECT_FALSE(panel.isClosed());
  EXPECT_TRUE(life.finishPendingClose(page, {earlier->number + 1}));
  EXPECT_TRUE(panel.isClosed());
  // A later window may lie at the same address in memory; its page is asked again.
  EXPECT_FALSE(life.windowShouldClose(panel));
}

TEST(Closing, takesTheWindowApartOnce) {
  TestApplication app;
  app.settle();
  app.showWindow("https://a.example/");
  WeakPtr<HovrelPanel> second = app.showWindow("https://b.example/");
  app.showWindow("https://c.example/");
  const auto controller = second->webView->configuration().userContentController;

  app.subsystems.log.clear();
  std::vector<std::size_t> openWhenRecorded;
  app.subsystems.onCall = [&](const std::string& entry) {
    if (entry == "sessions: schedule") openWhenRecorded.push_back(app.panelCount());
  };
  second->close();
  EXPECT_TRUE(second->isVisible()) << "until the page agreed";
  app.settleDown();
  EXPECT_FALSE(second);
  EXPECT_THAT(app.pages(), ElementsAre("https://a.example/", "https://c.example/"));
  EXPECT_EQ(app.headless.webEngine().webViews().size(), 2U);
  EXPECT_THAT(app.log(), ElementsAre("engine: load about:blank", "bar: load started", "engine: stopLoading",
                                     "engine: load about:blank", "sessions: schedule"));
  EXPECT_THAT(openWhenRecorded, ElementsAre(2U));
  const auto left = controller->channels();
  ASSERT_EQ(left.size(), 1U);
  EXPECT_EQ(left.front().name, "veltoWindow");
}

TEST(Closing, aWindowWithoutAPageClosesAtOnce) {
  TestApplication app;
  app.settle();
  WeakPtr<HovrelPanel> panel = app.showWindow("https://a.example/");
  panel->setContentView(std::make_unique<View>());
  panel->close();
  EXPECT_TRUE(panel->isClosed());
  EXPECT_EQ(app.panelCount(), 0U);
  app.settleDown();
  EXPECT_FALSE(panel);
}

TEST(Closing, theCommandClosesWhicheverWindowHasTheKeyboard) {
  TestApplication app;
  AppDelegate& delegate = app.settle();
  delegate.closeWindow();
  app.showWindow("https://a.example/");
  Window other(app.headless.application(), {{0, 0}, {300, 200}}, style_mask::kTitled);
  other.makeKeyAndOrderFront();
  delegate.closeWindow();
  app.settleDown();
  EXPECT_TRUE(other.isClosed());
  EXPECT_EQ(app.panelCount(), 1U);
  delegate.closeWindow();
  app.settleDown();
  EXPECT_EQ(app.panelCount(), 0U);
}

TEST(Closing, closingAndQuittingInOneTurnIsHarmless) {
  TestApplication app;
  app.settle();
  app.showWindow("https://a.example/").close();
  app.quit();
  app.settleDown();
}

TEST(Closing, oneWindowFromWithinTheOthersEnd) {
  TestApplication app;
  app.settle();
  WeakPtr<HovrelPanel> first = app.showWindow("https://a.example/");
  WeakPtr<HovrelPanel> second = app.showWindow("https://b.example/");
  app.subsystems.onCall = [&](const std::string& entry) {
    if (entry == "sessions: schedule" && second) second->close();
  };
  first->close();
  app.settleDown();
  EXPECT_EQ(app.panelCount(), 0U);
}

}  // namespace
}  // namespace velto
