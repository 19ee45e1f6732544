#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/HeadlessPlatform.h"
#include "platform/headless/HeadlessWindowSystem.h"

namespace velto {
namespace {

using Windows = std::vector<Window*>;

class HeadlessWindowSystemTest : public testing::Test {
 protected:
  HeadlessWindowSystemTest() {
    headless.onFailure = [this](const std::string& failure) { failures.push_back(failure); };
  }
  std::unique_ptr<Window> make(unsigned style = style_mask::kTitled) {
    return std::make_unique<Window>(application(), Rect{{0, 0}, {100, 100}}, style);
  }
  Application& application() { return headless.application(); }
  std::vector<std::string> failures;
  HeadlessPlatform headless;
  HeadlessWindowSystem& desktop = headless.windowSystem();
};

TEST_F(HeadlessWindowSystemTest, OrdersAreRecordedAndMakeTheStack) {
  const auto a = make();
  const auto b = make();
  const auto pinned = make();
  pinned->setLevel(kFloatingWindowLevel);
  pinned->orderFrontRegardless();
  a->makeKeyAndOrderFront();
  b->orderFrontRegardless();
  EXPECT_EQ(desktop.frontToBack(), (Windows{pinned.get(), b.get(), a.get()}));
  EXPECT_EQ(application().keyWindow(), a.get()) << "to the front is not to the keyboard";
  a->makeKeyAndOrderFront();
  b->orderOut();
  EXPECT_EQ(desktop.frontToBack(), (Windows{pinned.get(), a.get()}));
  using Order = WindowPeer::Order;
  EXPECT_EQ(desktop.orders(), (std::vector<HeadlessWindowSystem::Ordered>{{pinned.get(), Order::front},
                                                                          {a.get(), Order::frontAndKey},
                                                                          {b.get(), Order::front},
                                                                          {a.get(), Order::frontAndKey},
                                                                          {b.get(), Order::out}}));
}

TEST_F(HeadlessWindowSystemTest, FloatingIsGrantedOrNot) {
  const auto pinned = make();
  const auto other = make();
  pinned->setLevel(kFloatingWindowLevel);
  pinned->orderFrontRegardless();
  other->orderFrontRegardless();
  EXPECT_EQ(pinned->grantedLevel(), kFloatingWindowLevel);
  desktop.grantsFloating(false);
  EXPECT_EQ(pinned->grantedLevel(), kNormalWindowLevel);
  EXPECT_EQ(desktop.frontToBack(), (Windows{other.get(), pinned.get()}));
}

TEST_F(HeadlessWindowSystemTest, TheKeyboardPassesToItsLastHolderWhenTheKeyWindowGoes) {
  for (const std::string how : {"close", "destroy", "order out", "put away"}) {
    const auto first = make();
    const auto second = make();
    const auto neverKey = make();
    auto key = make();
    first->makeKeyAndOrderFront();
    second->makeKeyAndOrderFront();
    neverKey->orderFrontRegardless();
    key->makeKeyAndOrderFront();
    if (how == "close") desktop.clickDelete(*key);
    if (how == "destroy") key.reset();
    if (how == "order out") key->orderOut();
    if (how == "put away") desktop.miniaturizeByHand(*key, true);
    EXPECT_EQ(application().keyWindow(), nullptr) << how;
    headless.loop().drain();
    EXPECT_EQ(application().keyWindow(), second.get()) << how;
  }
}

TEST_F(HeadlessWindowSystemTest, TheKeyboardStaysWithAnotherProgram) {
  const auto first = make();
  const auto second = make();
  first->makeKeyAndOrderFront();
  second->makeKeyAndOrderFront();
  second->orderOut();
  desktop.focus(nullptr);
  headless.loop().drain();
  EXPECT_EQ(application().keyWindow(), nullptr);
  EXPECT_THROW(desktop.focus(second.get()), std::logic_error);
  EXPECT_THROW(desktop.clickDelete(*second), std::logic_error);
}

TEST_F(HeadlessWindowSystemTest, ActivatingGivesTheKeyboardToTheLastHolderElseToTheFrontmost) {
  desktop.activate();
  EXPECT_EQ(application().keyWindow(), nullptr);
  const auto a = make();
  const auto b = make();
  const auto panel = make(style_mask::kTitled | style_mask::kNonactivatingPanel);
  a->orderFrontRegardless();
  b->orderFrontRegardless();
  panel->orderFrontRegardless();
  desktop.activate();
  EXPECT_EQ(application().keyWindow(), b.get()) << "a panel that stays out of the way is passed over";
  a->makeKeyAndOrderFront();
  desktop.focus(nullptr);
  b->orderFrontRegardless();
  desktop.activate();
  EXPECT_EQ(application().keyWindow(), a.get());
  EXPECT_EQ(desktop.activations(), 3);
}

TEST_F(HeadlessWindowSystemTest, WindowsArePutAwayAndComeBack) {
  const auto window = make();
  window->makeKeyAndOrderFront();
  window->miniaturize();
  EXPECT_TRUE(desktop.frontToBack().empty());
  EXPECT_FALSE(window->isKey());
  window->deminiaturize();
  EXPECT_EQ(desktop.frontToBack(), Windows{window.get()});
  EXPECT_FALSE(window->isKey()) << "only who asks for the keyboard gets it";
  desktop.miniaturizeByHand(*window, true);
  window->makeKeyAndOrderFront();
  EXPECT_FALSE(window->isMiniaturized());
  EXPECT_TRUE(window->isKey());
}

class HeadlessAlertTest : public HeadlessWindowSystemTest {
 protected:
  void ask(const std::string& text, Window* on = nullptr, std::optional<std::string> field = std::nullopt) {
    Alert alert;
    alert.messageText = text;
    alert.buttons = {"Leave Page", "Stay on Page"};
    alert.textField = std::move(field);
    application().showAlert(alert, on, [this, text](const AlertAnswer& answer) {
      answers.push_back(text + ": " + std::to_string(answer.button) + answer.text);
    });
  }
  using Answers = std::vector<std::string>;
  Answers answers;
};

TEST_F(HeadlessAlertTest, AreAnsweredOldestFirstByIndexOrTitle) {
  ask("first");
  ask("second");
  ask("third", nullptr, "as it was");
  ask("fourth", nullptr, "as it was");
  EXPECT_EQ(desktop.alerts().size(), 4U);
  desktop.answerAlert(0);
  desktop.answerAlert("Stay on Page");
  desktop.answerAlert("Leave Page");
  desktop.answerAlert(1, "typed");
  EXPECT_TRUE(answers.empty()) << "answers are asynchronous";
  headless.advance();
  EXPECT_EQ(answers, (Answers{"first: 0", "second: 1", "third: 0as it was", "fourth: 1typed"}));
}

TEST_F(HeadlessAlertTest, WrongAnswersFailLoudly) {
  EXPECT_THROW(desktop.answerAlert(0), std::logic_error);
  ask("once");
  EXPECT_THROW(desktop.answerAlert(2), std::logic_error);
  EXPECT_THROW(desktop.answerAlert("OK"), std::logic_error);
  desktop.answerAlert(0);
  EXPECT_THROW(desktop.answerAlert(0), std::logic_error);
  EXPECT_THROW(application().showAlert({}, nullptr, [](const AlertAnswer&) {}), std::logic_error);
}

TEST_F(HeadlessAlertTest, AClosingWindowAnswersWithTheLastButton) {
  auto closed = make();
  auto destroyed = make();
  closed->orderFrontRegardless();
  ask("closed", closed.get());
  ask("destroyed", destroyed.get());
  ask("on its own");
  closed->close();
  destroyed.reset();
  EXPECT_EQ(desktop.alerts().size(), 1U);
  ask("too late", closed.get());
  headless.advance();
  EXPECT_EQ(answers, (Answers{"closed: 1", "destroyed: 1", "too late: 1"}));
  desktop.answerAlert(0);
}

TEST_F(HeadlessAlertTest, QuestionsForFilesAreAnsweredTheSameWay) {
  using Files = HeadlessWindowSystem::ChosenFiles;
  std::vector<Files> chosen;
  const auto choose = [&](bool several, Window* on = nullptr) {
    application().showOpenPanel({several, false, {"image/*"}}, on,
                                [&](const Files& f) { chosen.push_back(f); });
  };
  auto window = make();
  window->orderFrontRegardless();
  choose(false);
  choose(true, window.get());
  choose(true);
  choose(true, window.get());
  EXPECT_EQ(desktop.openPanels().size(), 4U);
  EXPECT_THROW(desktop.answerOpenPanel(Files({"/a", "/b"})), std::logic_error) << "it asks for one";
  desktop.answerOpenPanel(Files({"/a"}));
  desktop.answerOpenPanel(Files({"/a", "/b"}));
  desktop.answerOpenPanel(std::nullopt);
  window->close();
  EXPECT_TRUE(chosen.empty()) << "answers are asynchronous";
  headless.advance();
  EXPECT_EQ(chosen, (std::vector<Files>{Files({"/a"}), Files({"/a", "/b"}), std::nullopt, std::nullopt}));
  EXPECT_THROW(desktop.answerOpenPanel(std::nullopt), std::logic_error);
}

TEST(HeadlessAlerts, OneThatNobodyAnswersIsReportedAtTheEnd) {
  std::vector<std::string> failures;
  {
    HeadlessPlatform headless;
    headless.onFailure = [&](const std::string& failure) { failures.push_back(failure); };
    Alert alert;
    alert.buttons = {"OK"};
    auto window = std::make_unique<Window>(headless.application(), Rect{{0, 0}, {10, 10}}, 0);
    for (const char* text : {"answered", "on a window that goes with the test", "forgotten"}) {
      alert.messageText = text;
      headless.application().showAlert(alert, text[0] == 'o' ? window.get() : nullptr,
                                       [](const AlertAnswer&) {});
    }
    headless.windowSystem().answerAlert("OK");
    headless.application().showOpenPanel({}, nullptr, [](const auto&) {});
    window.reset();
  }
  EXPECT_EQ(failures,
            (std::vector<std::string>{"Nobody answered the alert \"on a window that goes with the test\"",
                                      "Nobody answered the alert \"forgotten\"",
                                      "Nobody answered the question for files"}));
}

TEST(HeadlessAlertsDeathTest, WithoutATestToTellTheProcessEnds) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto forget = [] {
    HeadlessPlatform headless;
    Alert alert;
    alert.messageText = "Sure?";
    alert.buttons = {"OK"};
    headless.application().showAlert(alert, nullptr, [](const AlertAnswer&) {});
  };
  EXPECT_DEATH(forget(), "Nobody answered the alert \"Sure\\?\"");
}

}  // namespace
}  // namespace velto
