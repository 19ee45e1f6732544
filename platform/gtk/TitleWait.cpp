#include "platform/gtk/TitleWait.h"

#include <utility>

#include "platform/gtk/Guard.h"

namespace velto {

TitleWait::TitleWait(MainQueue& queue, WebKitWebView* view, std::function<void(Navigation)> finished)
    : queue_(queue), view_(view), finished_(std::move(finished)) {
  const auto changed = [](WebKitWebView*, GParamSpec*, gpointer self) {
    guarded([self] { static_cast<TitleWait*>(self)->end(); });
  };
  titleChanged_ = {view_, "notify::title", G_CALLBACK(+changed), this};
}

void TitleWait::begin(Navigation navigation) {
  navigation_ = navigation;
  const bool isKnown = !textOf(webkit_web_view_get_title(view_)).empty();
  const bool isBlank = textOf(webkit_web_view_get_uri(view_)) == "about:blank";
  if (isKnown || isBlank) return end();
  // The page cannot be asked whether there is one to wait for: to the engine a script of ours is as good as a
  // touch by the person, which lets the page object to being left.
  constexpr double kLongestWait = 0.1;
  deadline_ = queue_.after(kLongestWait, [this] { end(); });
}

void TitleWait::end() {
  deadline_.cancel();
  const auto navigation = std::exchange(navigation_, std::nullopt);
  if (!navigation) return;
  // Who is told may close the web view.
  const auto tell = finished_;
  tell(*navigation);
}

void TitleWait::cancel() {
  deadline_.cancel();
  titleChanged_.disconnect();
  navigation_.reset();
}

}  // namespace velto
