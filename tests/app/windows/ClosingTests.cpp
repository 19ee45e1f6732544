#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
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
              "From “a.example”: changes you made may not be saved.");
    EXPECT_THAT(app_.headless.windowSystem().alerts().front().informativeText,
                testing::HasSubstr(test::url(kPage).host().value()))
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

TEST_F(ClosingTest, everyRoadAsksThePage) {
  app_.delegate().closeWindow();
  app_.settleDown();
  answer("Stay on Page");
  app_.headless.windowSystem().clickDelete(*panel_);
  app_.settleDown();
  answer("Stay on Page");
  EXPECT_TRUE(isOpen());
}

TEST_F(ClosingTest, closingAgainWhileItIsAskedClosesOnce) {
  close();
  panel_->close();
  app_.settleDown();
  EXPECT_EQ(questions(), 1U);
  answer("Leave Page");
  EXPECT_FALSE(panel_);
  EXPECT_EQ(app_.subsystems.countOf("sessions: schedule"), 1);
}

TEST_F(ClosingTest, closingAgainWhileItIsAskedAndStaying) {
  close();
  panel_->close();
  app_.settleDown();
  answer("Stay on Page");
  EXPECT_EQ(questions(), 0U);
  EXPECT_TRUE(isOpen());
  close();
  answer("Leave Page");
  EXPECT_FALSE(panel_) << "nothing is left over from before";
}

TEST_F(ClosingTest, anotherNavigationDoesNotCloseTheWindow) {
  close();
  answer("Stay on Page");
  app_.pageOf(*panel_).clickLink("about:blank");
  app_.settleDown();
  answer("Leave Page");
  EXPECT_TRUE(isOpen());
}

TEST_F(ClosingTest, aPageThatDoesNotAnswerHasNoSay) {
  app_.pageOf(*panel_).setResponsive(false);
  app_.settleDown();
  close();
  EXPECT_EQ(questions(), 0U);
  EXPECT_FALSE(panel_);
}

TEST_F(ClosingTest, aPageThatHangsWhileItIsAskedIsClosed) {
  close();
  app_.pageOf(*panel_).setResponsive(false);
  app_.settleDown();
  EXPECT_FALSE(panel_);
}

TEST_F(ClosingTest, aPageThatCrashedHasNoSay) {
  app_.pageOf(*panel_).crash();
  close();
  EXPECT_EQ(questions(), 0U);
  EXPECT_FALSE(panel_);
}

TEST_F(ClosingTest, aCrashWhileItIsAskedClosesAndShowsNoPage) {
  close();
  app_.pageOf(*panel_).crash();
  app_.settleDown();
  EXPECT_FALSE(panel_);
  for (const std::string& entry : app_.log()) EXPECT_EQ(entry.find("loadHtml"), std::string::npos) << entry;
}

TEST_F(ClosingTest, hangingOrDyingOtherwiseClosesNothing) {
  app_.pageOf(*panel_).setResponsive(false);
  app_.pageOf(*panel_).setResponsive(true);
  app_.pageOf(*panel_).crash();
  app_.settleDown();
  EXPECT_TRUE(isOpen());
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
  WeakPtr<HovrelPanel> first = app.showWindow("https://a.example/");
  WeakPtr<HovrelPanel> second = app.showWindow("https://b.example/");
  WeakPtr<HovrelPanel> third = app.showWindow("https://c.example/");
  const auto controller = second->webView->configuration().userContentController;
  ASSERT_EQ(controller->channels().size(), 5U);

  app.subsystems.log.clear();
  second->close();
  EXPECT_TRUE(second->isVisible()) << "until the page agreed";
  app.settleDown();
  EXPECT_FALSE(second);
  EXPECT_THAT(app.pages(), ElementsAre("https://a.example/", "https://c.example/"));
  EXPECT_TRUE(first->isVisible());
  EXPECT_TRUE(third->isVisible());
  EXPECT_EQ(app.headless.application().windows().size(), 2U);
  EXPECT_EQ(app.headless.webEngine().webViews().size(), 2U);
  EXPECT_THAT(app.log(), ElementsAre("engine: load about:blank", "bar: load started", "engine: stopLoading",
                                     "engine: load about:blank", "sessions: schedule"));
  const auto left = controller->channels();
  ASSERT_EQ(left.size(), 1U);
  EXPECT_EQ(left.front().name, "veltoWindow");
}

TEST(Closing, leavesTheListBeforeTheSessionIsRecorded) {
  TestApplication app;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/");
  std::vector<std::size_t> counts;
  app.subsystems.onCall = [&](const std::string& entry) {
    if (entry == "sessions: schedule") counts.push_back(app.panelCount());
  };
  panel.close();
  app.settleDown();
  EXPECT_THAT(counts, ElementsAre(0U));
}

/// A web view whose engine takes no load.
class RefusingWebView : public WebView {
 public:
  std::optional<Navigation> load(const UrlRequest&) override { return std::nullopt; }
  std::optional<Navigation> loadHtml(std::string_view, const std::optional<Url>&) override {
    return std::nullopt;
  }
  std::optional<Navigation> loadSubstitute(std::string_view, const Url&) override { return std::nullopt; }
  std::optional<Navigation> reload() override { return std::nullopt; }
  std::optional<Navigation> goBack() override { return std::nullopt; }
  std::optional<Navigation> goForward() override { return std::nullopt; }
  void stopLoading() override {}
  [[nodiscard]] std::optional<Url> url() const override { return std::nullopt; }
  [[nodiscard]] std::string title() const override { return ""; }
  [[nodiscard]] bool isLoading() const override { return false; }
  [[nodiscard]] bool canGoBack() const override { return false; }
  [[nodiscard]] bool canGoForward() const override { return false; }
  [[nodiscard]] bool isResponsive() const override { return true; }
  [[nodiscard]] std::optional<Uptime> lastUserGesture() const override { return std::nullopt; }
  [[nodiscard]] double pageZoom() const override { return 1; }
  void setPageZoom(double) override {}
  void evaluateJavaScript(std::string_view, ScriptCompletion) override {}
  void takeSnapshot(double, std::function<void(std::optional<std::string>)>) override {}
  [[nodiscard]] const WebViewConfiguration& configuration() const override { return configuration_; }

 private:
  WebViewConfiguration configuration_;
};

TEST(Closing, aWindowWithNothingToAskClosesAtOnce) {
  const struct {
    const char* what;
    std::function<std::unique_ptr<View>()> content;
  } cases[] = {
      {"no content", [] { return nullptr; }},
      {"no web view", [] { return std::make_unique<View>(); }},
      {"an engine that takes no load",
       [] {
         auto container = std::make_unique<View>();
         container->addSubview(std::make_unique<RefusingWebView>());
         return container;
       }},
  };
  for (const auto& c : cases) {
    TestApplication app;
    OpenWindows windows(app.headless.application());
    PageQuestions questions(app.headless.application());
    WindowLife life(windows, questions, app.subsystems.services().sessions, app.headless.loop());
    auto owned = std::make_unique<HovrelPanel>(app.headless.application(), Rect{{0, 0}, {300, 200}},
                                               style_mask::kTitled);
    const WeakPtr<HovrelPanel> panel = *owned;
    panel->setContentView(c.content());
    panel->setDelegate(life);
    windows.append(std::move(owned));
    panel->makeKeyAndOrderFront();
    panel->close();
    EXPECT_TRUE(panel->isClosed()) << c.what;
    EXPECT_TRUE(windows.isEmpty()) << c.what;
    app.settleDown();
    EXPECT_FALSE(panel) << c.what;
  }
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

TEST(Closing, aPageStillOnItsWayIsClosedToo) {
  TestApplication app;
  ScriptedPage never;
  never.loadDelay = ScriptedPage::kNever;
  app.headless.webEngine().setPage("https://a.example/", never);
  app.settle();
  WeakPtr<HovrelPanel> panel = app.showWindow("https://a.example/");
  panel->close();
  app.settleDown();
  EXPECT_FALSE(panel);
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
