#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/WeakPtr.h"
#include "platform/headless/VirtualLoop.h"
#include "platform/ui/Window.h"

namespace velto {

/// Questions of one kind that wait for the person, oldest first. Each is answered once, from the loop: by the
/// test, or with the answer of a dismissed one when the window it stands on closes.
template <class Question, class Answer>
class HeadlessSheets {
 public:
  using Completion = std::function<void(const Answer&)>;

  /// `dismissed` gives what is answered for a closing window.
  HeadlessSheets(VirtualLoop& loop, std::function<Answer(const Question&)> dismissed)
      : loop_(loop), dismissed_(std::move(dismissed)) {}

  void show(const Question& question, WeakPtr<Window> sheetOn, Completion completion) {
    sheets_.push_back({++last_, question, bool{sheetOn}, sheetOn, std::move(completion), false});
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
      const bool closed = sheet.onWindow && (!sheet.window || sheet.window->isClosed());
      if (!closed || std::exchange(sheet.isDismissed, true)) continue;
      loop_.async([this, alive = std::weak_ptr(alive_), number = sheet.number] {
        if (!alive.expired()) dismiss(number);
      });
    }
  }

 private:
  struct Sheet {
    std::uint64_t number = 0;
    Question question;
    bool onWindow = false;
    WeakPtr<Window> window;
    Completion completion;
    /// Its window closed; the answer is on its way.
    bool isDismissed = false;
  };

  void dismiss(std::uint64_t number) {
    const auto found =
        std::find_if(sheets_.begin(), sheets_.end(), [number](const Sheet& s) { return s.number == number; });
    const Sheet sheet = std::move(*found);
    sheets_.erase(found);
    if (sheet.completion) sheet.completion(dismissed_(sheet.question));
  }

  VirtualLoop& loop_;
  std::function<Answer(const Question&)> dismissed_;
  std::deque<Sheet> sheets_;
  std::uint64_t last_ = 0;
  /// Tells queued steps that the sheets are still there.
  std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace velto
