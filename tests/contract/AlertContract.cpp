#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/contract/WindowContract.h"

namespace velto {
namespace {

using test::WindowContract;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AlertContract : public WindowContract {
 protected:
  void show(const Alert& alert, Window* window) {
    shown = application().showAlert(alert, window,
                                    [this](const AlertAnswer& answer) { answers.push_back(answer); });
  }
  bool runUntilAnswered(std::size_t count) {
    return contract.runUntil([this, count] { return answers.size() >= count; });
  }

  const Alert question{.messageText = "Leave?",
                       .informativeText = "It asks.",
                       .buttons = {"Leave", "More", "Stay"},
                       .textField = {}};
  std::vector<AlertAnswer> answers;
  SheetId shown = 0;
};

TEST_F(AlertContract, EveryButtonAnswersOnceAndLater) {
  auto window = makeKey({{100, 100}, {400, 300}});
  for (Window* const sheetOn : {static_cast<Window*>(window.get()), static_cast<Window*>(nullptr)}) {
    for (std::size_t button = 0; button < question.buttons.size(); ++button) {
      answers.clear();
      show(question, sheetOn);
      contract.letPass(0.05);
      EXPECT_THAT(answers, IsEmpty());
      contract.answerAlert(button);
      EXPECT_THAT(answers, IsEmpty());
      ASSERT_TRUE(runUntilAnswered(1));
      EXPECT_EQ(answers[0].button, button);
    }
  }
  settle();
  EXPECT_EQ(answers.size(), 1U);
}

TEST_F(AlertContract, TextFieldGivesWhatStandsInIt) {
  auto window = makeKey({{100, 100}, {400, 300}});
  Alert prompt = question;
  prompt.textField = "as it was";
  show(prompt, window.get());
  show(prompt, window.get());
  contract.answerAlert(0);
  contract.answerAlert(1, "typed ä€");
  ASSERT_TRUE(runUntilAnswered(2));
  EXPECT_EQ(answers[0].text, "as it was");
  EXPECT_EQ(answers[1].text, "typed ä€");
}

TEST_F(AlertContract, ClosingTheWindowAnswersWithTheLastButton) {
  auto window = makeKey({{100, 100}, {400, 300}});
  auto other = makeKey({{520, 100}, {400, 300}});
  show(question, window.get());
  show(question, other.get());
  window->close();
  ASSERT_TRUE(runUntilAnswered(1));
  EXPECT_EQ(answers[0].button, 2U);
  other.reset();
  ASSERT_TRUE(runUntilAnswered(2));
  EXPECT_EQ(answers[1].button, 2U);
}

TEST_F(AlertContract, WhatIsTakenFromTheScreenIsAnsweredAndTheRestStays) {
  auto window = makeKey({{100, 100}, {300, 200}});
  show(question, window.get());
  show(question, window.get());
  int cancelled = 0;
  const SheetId files =
      application().showOpenPanel({}, window.get(), [&](const auto& chosen) { cancelled += chosen ? 0 : 1; });
  EXPECT_NE(files, shown);
  for (int attempt = 0; attempt < 2; ++attempt) {
    application().dismissSheet(files);
    application().dismissSheet(shown);
    EXPECT_EQ(answers.size(), static_cast<std::size_t>(attempt));
    ASSERT_TRUE(runUntilAnswered(1));
    settle();
    EXPECT_EQ(cancelled, 1);
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers[0].button, 2U);
  }
  contract.answerAlert(1);
  ASSERT_TRUE(runUntilAnswered(2));
  EXPECT_EQ(answers[1].button, 1U);
}

TEST_F(AlertContract, FilesAreChosenOrNot) {
  using Files = std::optional<std::vector<std::filesystem::path>>;
  const std::vector<Files> given{Files({"/etc/hostname"}), std::nullopt,
                                 Files({"/etc/hostname", "/etc/passwd"})};
  std::vector<Files> chosen;
  auto window = makeKey({{100, 100}, {400, 300}});
  const std::vector<std::string> types{"image/*", "text/plain", "no type", "a/b/c", std::string(100000, 'x')};
  const auto ask = [&](bool directories) {
    application().showOpenPanel({true, directories, types}, window.get(),
                                [&](const Files& files) { chosen.push_back(files); });
  };
  for (const Files& answer : given) {
    ask(chosen.size() == 1);
    contract.letPass(0.2);
    contract.answerOpenPanel(answer);
  }
  EXPECT_TRUE(contract.runUntil([&] { return chosen.size() == 3; }));
  EXPECT_EQ(chosen, given);
  ask(false);
  contract.letPass(0.2);
  window->close();
  EXPECT_TRUE(contract.runUntil([&] { return chosen.size() == 4; }));
  EXPECT_EQ(chosen.back(), std::nullopt);
}

TEST_F(AlertContract, AlertKeepsTheApplicationActive) {
  auto window = makeKey({{100, 100}, {400, 300}});
  show(question, window.get());
  settle();
  EXPECT_TRUE(application().isActive());
  contract.answerAlert(0);
  ASSERT_TRUE(runUntilAnswered(1));
  EXPECT_TRUE(contract.runUntil([&] { return window->isKey(); }));
}

}  // namespace
}  // namespace velto
