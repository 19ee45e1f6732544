#include "app/windows/PageQuestions.h"

#include <algorithm>

namespace velto {

void PageQuestions::remember(Open question) {
  std::erase_if(open_, [](const Open& open) { return open.answer.expired(); });
  open_.push_back(std::move(question));
}

bool PageQuestions::isAsking(const WebView& webView) const {
  return std::any_of(open_.begin(), open_.end(),
                     [&](const Open& open) { return open.page.get() == &webView && !open.answer.expired(); });
}

void PageQuestions::cancel(const WebView& webView) {
  // An answer may lead to the next question.
  for (const Open& open : std::exchange(open_, {})) {
    if (open.page.get() != &webView) {
      open_.push_back(open);
      continue;
    }
    if (open.sheet) application_.dismissSheet(*open.sheet);
    open.cancel();
  }
}

}  // namespace velto
