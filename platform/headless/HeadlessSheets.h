#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/WeakPtr.h"
#include "platform/headless/VirtualLoop.h"
#include "platform/ui/Alert.h"
#include "platform/ui/Window.h"

namespace velto {

/// Questions of one kind that wait for the person, oldest first. Each is answered once, from the loop: by the
/// test, or with the answer of a dismissed one when it is taken away or the window it stands on closes.
template <class Question, class Answer>
class HeadlessSheets {
 public:
  using Completion = std::function<void(const Answer&)>;

  /// `dismissed` gives what is answered for a closing window and for what is taken from the screen.
  HeadlessSheets(VirtualLoop& loop, std::function<Answer(const Question&)> dismissed)
      : loop_(loop), dismissed_(std::move(dismissed)) {}

  void show(SheetId number, const Question& question, WeakPtr<Window> sheetOn, Completion completion) {
    sheets_.push_back({number, question, bool{sheetOn}, sheetOn, std::move(completion), false});
    dismissOfClosedWindows();
  }

  /// Those that still wait; those of closed windows do not.
  [[nodiscard]] std::vector<Question> waiting() const {
    std::vector<Question> questions;
    for (const Sheet& sheet : sheets_) {
      if (!sheet.isDismissed) questions.push_back(sheet.question);
    }
    return questions;
  }

  /// All whose completion was never queued by the test, those of closed windows included.
  [[nodiscard]] std::vector<Question> unanswered() const {
    std::vector<Question> questions;
    for (const Sheet& sheet : sheets_) questions.push_back(sheet.question);
    return questions;
  }

  /// `answerFor` may throw; then the question waits on. Throws `std::logic_error` when none waits.
  void answerOldest(const std::function<Answer(const Question&)>& answerFor) {
    const auto oldest =
        std::find_if(sheets_.begin(), sheets_.end(), [](const Sheet& s) { return !s.isDismissed; });
    if (oldest == sheets_.end()) throw std::logic_error("There is nothing to answer");
    loop_.async([completion = oldest->completion, answer = answerFor(oldest->question)] {
      if (completion) completion(answer);
    });
    sheets_.erase(oldest);
  }

  /// A window closed or went.
  void dismissOfClosedWindows() {
    for (Sheet& sheet : sheets_) {
      if (sheet.onWindow && (!sheet.window || sheet.window->isClosed())) dismiss(sheet);
    }
  }

  /// Nothing happens when no such question is shown.
  void dismiss(SheetId number) {
    for (Sheet& sheet : sheets_) {
      if (sheet.number == number) dismiss(sheet);
    }
  }

 private:
  struct Sheet {
    SheetId number = 0;
    Question question;
    bool onWindow = false;
    WeakPtr<Window> window;
    Completion completion;
    /// It is no longer shown; the answer is on its way.
    bool isDismissed = false;
  };

  void dismiss(Sheet& sheet) {
    if (std::exchange(sheet.isDismissed, true)) return;
    loop_.async([this, alive = std::weak_ptr(alive_), number = sheet.number] {
      if (!alive.expired()) answerDismissed(number);
    });
  }

  void answerDismissed(SheetId number) {
    const auto found =
        std::find_if(sheets_.begin(), sheets_.end(), [number](const Sheet& s) { return s.number == number; });
    const Sheet sheet = std::move(*found);
    sheets_.erase(found);
    if (sheet.completion) sheet.completion(dismissed_(sheet.question));
  }

  VirtualLoop& loop_;
  std::function<Answer(const Question&)> dismissed_;
  std::deque<Sheet> sheets_;
  /// Tells queued steps that the sheets are still there.
  std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace velto
