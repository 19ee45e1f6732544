#include "platform/gtk/FrameKeeper.h"

#include <utility>

namespace velto {

namespace {

/// Longer than a window manager takes to answer.
constexpr double kSettleTime = 0.4;
/// Nobody sees more places than one for each picture.
constexpr double kFrameTime = 1.0 / 60;

}  // namespace

FrameKeeper::FrameKeeper(GtkWindow* toplevel, Window& window, const GtkScreens& screens, MainQueue& queue)
    : toplevel_(toplevel), window_(window), screens_(screens), queue_(queue) {}

bool FrameKeeper::isMapped() const { return gtk_widget_get_mapped(GTK_WIDGET(toplevel_)) != FALSE; }

bool FrameKeeper::isShown() const {
  if (!isMapped()) return false;
  const auto state = gdk_window_get_state(gtk_widget_get_window(GTK_WIDGET(toplevel_)));
  return (state & (GDK_WINDOW_STATE_ICONIFIED | GDK_WINDOW_STATE_WITHDRAWN)) == 0;
}

XRect FrameKeeper::real() const {
  GdkWindow* const gdk = gtk_widget_get_window(GTK_WIDGET(toplevel_));
  XRect rect;
  gdk_window_get_geometry(gdk, nullptr, nullptr, &rect.width, &rect.height);
  gdk_window_get_origin(gdk, &rect.x, &rect.y);
  return rect;
}

void FrameKeeper::move() {
  const XRect to = wanted();
  gdk_window_move_resize(gtk_widget_get_window(GTK_WIDGET(toplevel_)), to.x, to.y, to.width, to.height);
}

void FrameKeeper::request() {
  if (!isMapped()) return;
  settleLater();
  isBehind_ = pacing_.isPending();
  if (!isBehind_) movePaced();
}

void FrameKeeper::movePaced() {
  move();
  pacing_ = queue_.after(kFrameTime, [this] {
    if (std::exchange(isBehind_, false) && isMapped()) movePaced();
  });
}

void FrameKeeper::willShow() {
  const XRect to = wanted();
  gtk_window_move(toplevel_, to.x, to.y);
  gtk_window_resize(toplevel_, to.width, to.height);
  mayCorrect_ = true;
  settleLater();
}

void FrameKeeper::didShow() {
  if (isShown()) correctOnce();
}

bool FrameKeeper::correctOnce() {
  if (!mayCorrect_ || real() == wanted()) return false;
  mayCorrect_ = false;
  move();
  settleLater();
  return true;
}

void FrameKeeper::settleLater() {
  settling_.cancel();
  settling_ = queue_.after(kSettleTime, [this] { settle(); });
}

void FrameKeeper::settle() {
  if (!isShown() || correctOnce()) return;
  mayCorrect_ = false;
  takeReal();
}

void FrameKeeper::configured() {
  if (!settling_.isPending()) takeReal();
}

void FrameKeeper::takeReal() {
  // A frame that was asked for in fractions of a unit is not changed for its rounding.
  if (isShown() && real() != wanted()) window_.backendMovedTo(screens_.geometry().fromX(real()));
}

}  // namespace velto
