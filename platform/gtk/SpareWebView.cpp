#include "platform/gtk/SpareWebView.h"

#include <utility>

#include "platform/gtk/Guard.h"

namespace velto {

namespace {

/// Of the window off the screen; about what windows are asked for.
constexpr int kWidth = 800;
constexpr int kHeight = 600;

}  // namespace

SpareWebView::SpareWebView(MainQueue& queue, std::function<GObjectPtr<WebKitWebView>()> make)
    : queue_(queue), make_(std::move(make)) {}

SpareWebView::~SpareWebView() {
  wakeUp_.cancel();
  if (const auto view = release()) gtk_widget_destroy(GTK_WIDGET(view.get()));
}

void SpareWebView::prepareAfter(double seconds) {
  wakeUp_.cancel();
  if (!view_) {
    wakeUp_ = queue_.after(seconds, [this] { prepare(); });
  }
}

GObjectPtr<WebKitWebView> SpareWebView::take() {
  if (!view_ || webkit_web_view_is_loading(view_.get()) != FALSE) return nullptr;
  return release();
}

/// Out of everything that was put around it.
GObjectPtr<WebKitWebView> SpareWebView::release() {
  terminated_.disconnect();
  if (auto offscreen = std::exchange(offscreen_, nullptr)) {
    gtk_container_remove(GTK_CONTAINER(offscreen.get()), GTK_WIDGET(view_.get()));
    // The next window need not wait for this one to go.
    queue_.async([offscreen] { gtk_widget_destroy(offscreen.get()); });
  }
  return std::exchange(view_, nullptr);
}

void SpareWebView::prepare() {
  view_ = make_();
  terminated_ = {view_.get(), "web-process-terminated", G_CALLBACK(processTerminated), this};
  offscreen_ = GObjectPtr<GtkWidget>::retain(gtk_offscreen_window_new());
  gtk_window_set_default_size(GTK_WINDOW(offscreen_.get()), kWidth, kHeight);
  gtk_container_add(GTK_CONTAINER(offscreen_.get()), GTK_WIDGET(view_.get()));
  gtk_widget_show_all(offscreen_.get());
  // A page that comes as a text, not from an address, leaves nothing to go back to.
  webkit_web_view_load_html(view_.get(), "<html></html>", nullptr);
}

void SpareWebView::processTerminated(WebKitWebView*, WebKitWebProcessTerminationReason, gpointer self) {
  guarded([self] {
    auto& spare = *static_cast<SpareWebView*>(self);
    // Not from within the view's own signal.
    spare.queue_.async([view = spare.release()] { gtk_widget_destroy(GTK_WIDGET(view.get())); });
  });
}

}  // namespace velto
