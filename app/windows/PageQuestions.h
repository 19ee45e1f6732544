#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/ui/Application.h"
#include "platform/web/PendingAnswer.h"
#include "platform/web/WebView.h"

namespace velto {

/// The questions of pages that wait for an answer. None outlives what it was asked for: it is cancelled, and
/// its sheet taken away, when the page's window is to close, when its process dies, and when another page
/// takes its place.
class PageQuestions {
 public:
  /// Puts the question before the person, whose answer goes to the function. Absent when there is no sheet.
  template <class T>
  using Show = std::function<std::optional<SheetId>(std::function<void(T)>)>;

  explicit PageQuestions(Application& application) : application_(application) {}

  /// `completion` gets the first answer, or `cancelled`.
  template <class T>
  void ask(WebView& webView, T cancelled, std::function<void(T)> completion, const Show<T>& show) {
    const auto answer = std::make_shared<PendingAnswer<T>>(cancelled, std::move(completion));
    auto cancel = [weak = std::weak_ptr(answer), cancelled] {
      if (const auto open = weak.lock()) open->answer(cancelled);
    };
    const auto sheet = show([answer](T given) { answer->answer(std::move(given)); });
    remember({webView, answer, std::move(cancel), sheet});
  }
  [[nodiscard]] bool isAsking(const WebView& webView) const;
  /// Answers everything that the page has asked.
  void cancel(const WebView& webView);

 private:
  /// What shows the question owns where its answer goes.
  struct Open {
    WeakPtr<WebView> page;
    std::weak_ptr<void> answer;
    std::function<void()> cancel;
    std::optional<SheetId> sheet;
  };
  void remember(Open question);

  Application& application_;
  std::vector<Open> open_;
};

}  // namespace velto
