#include "platform/gtk/TitleWait.h"

#include <memory>
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
  if (isKnown || isBlank) {
    end();
  } else {
    askPage();
  }
}

/// Only the page knows whether there is a title to wait for.
void TitleWait::askPage() {
  constexpr double kLongestWait = 0.25;
  deadline_ = queue_.after(kLongestWait, [this] { end(); });
  webkit_web_view_evaluate_javascript(view_, "document.title === ''", -1, "velto", nullptr, nullptr,
                                      pageAnswered, new WeakPtr<TitleWait>(*this));
}

void TitleWait::pageAnswered(GObject* view, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<WeakPtr<TitleWait>> self(static_cast<WeakPtr<TitleWait>*>(data));
  GErrorPtr error;
  const auto untitled = GObjectPtr<JSCValue>::adopt(
      webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, error.out()));
  if (!untitled || jsc_value_to_boolean(untitled.get()) == FALSE) return;
  guarded([&] {
    if (*self) (*self)->end();
  });
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
  invalidateWeakReferences();
  deadline_.cancel();
  titleChanged_.disconnect();
  navigation_.reset();
}

}  // namespace velto
