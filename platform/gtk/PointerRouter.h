#pragma once

#include <functional>

#include <gdk/gdk.h>

#include "platform/gtk/GtkScreens.h"
#include "platform/ui/View.h"
#include "platform/ui/Window.h"

namespace velto {

/// Delivers the pointer's events of one window to its views: to the view under the pointer, then up its
/// superviews until one uses it. Who used a press gets the drag and the release, wherever the pointer is.
///
/// A view may do anything in its answer, closing and dropping its window included.
class PointerRouter {
 public:
  PointerRouter(Window& window, const GtkScreens& screens) : window_(window), screens_(screens) {}

  /// A pointer event on the widget of `at`. True when a view used it.
  bool route(View& at, const GdkEvent& event);
  /// No release will come for the last press.
  void forgetPress() { pressed_ = nullptr; }

 private:
  [[nodiscard]] MouseEvent describe(const GdkEvent& event) const;
  bool press(View& at, const GdkEventButton& button, MouseEvent event);
  bool release(const GdkEventButton& button, const View& at, MouseEvent event);
  bool move(View& at, const GdkEventMotion& motion, MouseEvent event);
  void countClick(const GdkEventButton& button);

  Window& window_;
  const GtkScreens& screens_;
  WeakPtr<View> pressed_;
  guint pressedButton_ = 0;
  int clickCount_ = 0;
  GdkEventButton lastPress_{};
};

}  // namespace velto
