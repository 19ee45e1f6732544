#include "platform/gtk/SpareWebView.h"

#include <utility>

#include "platform/gtk/Guard.h"

namespace velto {

SpareWebView::SpareWebView(MainQueue& queue, std::function<GObjectPtr<WebKitWebView>()> make)
    : queue_(queue), make_(std::move(make)) {}

SpareWebView::~SpareWebView() {
  wakeUp_.cancel();
  if (const auto view = take()) gtk_widget_destroy(GTK_WIDGET(view.get()));
}

void SpareWebView::prepareAfter(double seconds) {
  wakeUp_.cancel();
  if (!view_) {
    wakeUp_ = queue_.after(seconds, [this] { prepare(); });
  }
}

GObjectPtr<WebKitWebView> SpareWebView::take() {
  terminated_.disconnect();
  return std::exchange(view_, nullptr);
}

void SpareWebView::prepare() {
  view_ = make_();
  terminated_ = {view_.get(), "web-process-terminated", G_CALLBACK(processTerminated), this};
  // Work for the process starts it. A page would do so too, but would be one to go back to.
  webkit_web_view_evaluate_javascript(view_.get(), "0", -1, nullptr, nullptr, nullptr, nullptr, nullptr);
}

void SpareWebView::processTerminated(WebKitWebView*, WebKitWebProcessTerminationReason, gpointer self) {
  guarded([self] {
    auto& spare = *static_cast<SpareWebView*>(self);
    // Not from within the view's own signal.
    spare.queue_.async([view = spare.take()] { gtk_widget_destroy(GTK_WIDGET(view.get())); });
  });
}

}  // namespace velto
