#include <functional>
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

TEST(PageDialogs, askBeforeAPageIsLeft) {
  const struct {
    const char* page;
    const char* text;
    const char* button;
    bool leaves;
  } cases[] = {
      {"https://www.a.example:8080/x", "From “www.a.example”: changes you made may not be saved.",
       "Leave Page", true},
      {"file:///tmp/a.html", "Changes you made may not be saved.", "Stay on Page", false},
  };
  TestApplication app;
  app.settle();
  HovrelPanel& panel = app.openWindow("about:blank");
  for (const auto& c : cases) {
    std::optional<bool> answer;
    panel.webView->uiDelegate()->runBeforeUnloadConfirmPanel(*panel.webView, test::url(c.page),
                                                             [&](bool leave) { answer = leave; });
    ASSERT_EQ(app.headless.windowSystem().alerts().size(), 1U);
    const Alert alert = app.headless.windowSystem().alerts().front();
    EXPECT_EQ(alert.messageText, "Are you sure you want to leave this page?");
    EXPECT_EQ(alert.informativeText, c.text);
    EXPECT_THAT(alert.buttons, ElementsAre("Leave Page", "Stay on Page"));
    app.headless.windowSystem().answerAlert(c.button);
    app.settleDown();
    EXPECT_EQ(answer, c.leaves) << c.page;
  }
}

/// An application with one window, and what its page was answered.
class PageQuestionsTest : public ::testing::Test {
 public:
  PageQuestionsTest() {
    app_.settle();
    panel_ = app_.showWindow("https://a.example/");
  }

  HeadlessWebView& page() { return TestApplication::pageOf(*panel_); }
  HeadlessWindowSystem& desktop() { return app_.headless.windowSystem(); }
  void alert() {
    page().alert("!", [this] { answers_.emplace_back("closed"); });
  }
  void confirm() {
    page().confirm("?", [this](bool yes) { answers_.emplace_back(yes ? "yes" : "no"); });
  }
  void prompt() {
    page().prompt("Name?", "Ann", [this](const std::optional<std::string>& text) {
      answers_.push_back(text ? "text " + *text : "no text");
    });
  }
  void chooseFiles() {
    page().chooseFiles({}, [this](const HeadlessWindowSystem::ChosenFiles& files) {
      answers_.emplace_back(files ? "files" : "no files");
    });
  }
  void leave() {
    page().uiDelegate()->runBeforeUnloadConfirmPanel(
        page(), page().url(), [this](bool leaves) { answers_.emplace_back(leaves ? "leaves" : "stays"); });
  }
  /// Answers what the page asks, until it asks nothing for a while; gives how much that was.
  int answerAll() {
    int shown = 0;
    for (app_.settleDown(); !desktop().alerts().empty(); app_.settleDown(), ++shown) desktop().answerAlert(0);
    return shown;
  }
  /// `while (true) alert()`
  void alertForEver() {
    page().alert("again", [this] {
      answers_.emplace_back("closed");
      if (answers_.size() < kFarTooMany) alertForEver();
    });
  }
  std::string debugLog() { return app_.headless.files().read("/home/p/Documents/urlbar_debug.txt"); }

  static constexpr std::size_t kFarTooMany = 100;
  TestApplication app_;
  WeakPtr<HovrelPanel> panel_;
  std::vector<std::string> answers_;
};

TEST_F(PageQuestionsTest, reachThePersonAndComeBack) {
  const struct {
    void (PageQuestionsTest::*ask)();
    const char* message;
    std::optional<std::string> field;
    const char* button;
    std::optional<std::string> typed;
    const char* answer;
  } cases[] = {
      {&PageQuestionsTest::alert, "!", {}, "OK", {}, "closed"},
      {&PageQuestionsTest::confirm, "?", {}, "OK", {}, "yes"},
      {&PageQuestionsTest::confirm, "?", {}, "Cancel", {}, "no"},
      {&PageQuestionsTest::prompt, "Name?", "Ann", "OK", "", "text "},
      {&PageQuestionsTest::prompt, "Name?", "Ann", "Cancel", "Bob", "no text"},
  };
  for (const auto& c : cases) {
    (this->*c.ask)();
    app_.settleDown();
    ASSERT_EQ(desktop().alerts().size(), 1U);
    EXPECT_EQ(desktop().alerts().front().messageText, c.message);
    EXPECT_EQ(desktop().alerts().front().textField, c.field);
    desktop().answerAlert(c.button, c.typed);
    app_.settleDown();
    EXPECT_EQ(answers_.back(), c.answer);
  }
}

TEST_F(PageQuestionsTest, areCancelledWhenTheWindowIsToClose) {
  ScriptedPage asks;
  asks.beforeUnload = true;
  app_.headless.webEngine().setPage("https://a.example/", asks);
  panel_ = app_.showWindow("https://a.example/");
  alert();
  confirm();
  prompt();
  chooseFiles();
  app_.settleDown();
  EXPECT_TRUE(answers_.empty());
  panel_->close();
  app_.settleDown();
  EXPECT_THAT(answers_, ElementsAre("closed", "no", "no text", "no files"));

  confirm();
  app_.settleDown();
  EXPECT_THAT(answers_, testing::Contains("no").Times(2)) << "unseen";
  ASSERT_EQ(desktop().alerts().size(), 1U) << "the others are gone";
  EXPECT_TRUE(desktop().openPanels().empty());
  EXPECT_EQ(desktop().alerts().front().messageText, "Are you sure you want to leave this page?");
  desktop().answerAlert("Stay on Page");
  app_.settleDown();
  EXPECT_TRUE(desktop().alerts().empty());
  EXPECT_EQ(answers_.size(), 5U);

  confirm();
  app_.settleDown();
  EXPECT_EQ(desktop().alerts().size(), 1U) << "the window stays, and its page may ask again";
  desktop().answerAlert("OK");
  app_.settleDown();
  EXPECT_EQ(answers_.back(), "yes");
}

TEST_F(PageQuestionsTest, withoutEndDoNotKeepTheWindow) {
  ScriptedPage asks;
  asks.beforeUnload = true;
  app_.headless.webEngine().setPage("https://a.example/", asks);
  panel_ = app_.showWindow("https://a.example/");
  // Its script never ends, so its process never comes to the question whether to leave.
  alertForEver();
  app_.settleDown();
  EXPECT_EQ(desktop().alerts().size(), 1U);
  panel_->close();
  app_.settleDown();
  EXPECT_FALSE(panel_);
  EXPECT_LT(answers_.size(), 20U);
}

TEST_F(PageQuestionsTest, goWithWhatAskedThem) {
  const struct {
    const char* what;
    std::function<void()> end;
  } cases[] = {
      {"another page", [this] { page().clickLink("https://b.example/"); }},
      {"its process dies", [this] { page().crash(); }},
  };
  for (const auto& c : cases) {
    answers_.clear();
    confirm();
    leave();
    chooseFiles();
    app_.settleDown();
    ASSERT_EQ(desktop().alerts().size() + desktop().openPanels().size(), 3U) << c.what;
    c.end();
    app_.settleDown();
    EXPECT_EQ(desktop().alerts().size() + desktop().openPanels().size(), 0U) << c.what;
    EXPECT_THAT(answers_, testing::UnorderedElementsAre("no", "stays", "no files")) << c.what;
  }
}

TEST_F(PageQuestionsTest, areRefusedWhenThereAreTooManyAtATime) {
  for (int i = 0; i < 31; ++i) confirm();
  EXPECT_EQ(answerAll(), 20);
  EXPECT_EQ(answers_.size(), 20U) << "the others wait";
  app_.headless.advance(PageDialogs::kRefusalDelay);
  EXPECT_EQ(answers_.size(), 31U);
  EXPECT_THAT(answers_, testing::Contains("no").Times(11));
  const std::string line = "refusing the dialogs of https://a.example/, which shows too many\n";
  EXPECT_THAT(debugLog(), testing::EndsWith(line));
  EXPECT_EQ(debugLog().find(line), debugLog().rfind(line)) << "it is said once";

  page().clickLink("https://b.example/");
  app_.settleDown();
  confirm();
  EXPECT_EQ(answerAll(), 1) << "another page";
  app_.headless.advance(1);
  for (int i = 0; i < 30; ++i) alert();
  EXPECT_EQ(answerAll(), 19);
  app_.headless.advance(10);
  confirm();
  EXPECT_EQ(answerAll(), 1) << "time has passed";
}

TEST_F(PageQuestionsTest, areRefusedWhenOneFollowsTheOtherWithoutEnd) {
  alertForEver();
  EXPECT_EQ(answerAll(), 11) << "ten that follow";
  const std::size_t before = answers_.size();
  app_.headless.advance(2);
  EXPECT_LE(answers_.size() - before, 10U) << "in no hurry";
  EXPECT_EQ(answerAll(), 0);
  app_.headless.advance(60);
  EXPECT_EQ(answers_.size(), kFarTooMany) << "the page goes on, unseen";

  confirm();
  EXPECT_EQ(answerAll(), 0) << "and it has lost the person's trust";
  app_.headless.advance(1);
  EXPECT_EQ(answers_.back(), "no");
  page().mouseDown({});
  confirm();
  EXPECT_EQ(answerAll(), 1) << "which a touch gives back";
  for (int i = 0; i < 50; ++i, app_.headless.advance(1)) {
    confirm();
    EXPECT_EQ(answerAll(), 1) << "now and then is no loop";
  }
}

TEST_F(PageQuestionsTest, whetherToLeaveAreRefusedButForTheWindowItself) {
  ScriptedPage asks;
  asks.beforeUnload = true;
  app_.headless.webEngine().setPage("https://a.example/", asks);
  panel_ = app_.showWindow("https://a.example/", {.incognito = true});
  for (int i = 0; i < 30; ++i) leave();
  EXPECT_EQ(answerAll(), 20);
  EXPECT_EQ(answers_.size(), 20U);
  EXPECT_THAT(debugLog(), testing::EndsWith("refusing the dialogs of (private), which shows too many\n"));
  panel_->close();
  app_.settleDown();
  EXPECT_EQ(answers_.size(), 30U) << "the late answers are given at once";
  ASSERT_EQ(desktop().alerts().size(), 1U);
  desktop().answerAlert("Leave Page");
  app_.settleDown();
  EXPECT_FALSE(panel_);
}

}  // namespace
}  // namespace velto
