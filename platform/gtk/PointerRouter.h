#pragma once

#include <functional>

#include <gdk/gdk.h>

#include "platform/gtk/GtkScreens.h"
#include "platform/ui/PointerTracker.h"
#include "platform/ui/View.h"
#include "platform/ui/Window.h"

namespace velto {

/// Delivers the pointer's events of one window to its views: to the view under the pointer, then up its
/// superviews until one uses it. Who used a press gets the drag and the release, wherever the pointer is.
/// Views are told that it came and left as `PointerTracker` says, though not while a button is down.
///
/// A view may do anything in its answer, closing and dropping its window included.
class PointerRouter {
 public:
  PointerRouter(Window& window, const GtkScreens& screens) : window_(window), screens_(screens) {}

  /// A pointer event on the widget of `at`. True when a view used it.
  bool route(View& at, const GdkEvent& event);
  /// The pointer left the window for another one, or the window left the screen; no release will come for the
  /// last press.
  void leave();
  /// The same, unless a button is down: then the pointer is still the window's.
  void leave(const GdkEventCrossing& crossing);

 private:
  [[nodiscard]] MouseEvent describe(const GdkEvent& event) const;
  bool press(View& at, const GdkEventButton& button, MouseEvent event);
  bool release(const GdkEventButton& button, MouseEvent inContent);
  bool drag(MouseEvent inContent);
  /// The release of the press that is held will not come.
  void losePress();
  void track(const MouseEvent& inContent);
  void countClick(const GdkEventButton& button);

  Window& window_;
  const GtkScreens& screens_;
  PointerTracker tracker_;
  WeakPtr<View> pressed_;
  guint pressedButton_ = 0;
  Point lastScreenLocation_;
  int clickCount_ = 0;
  GdkEventButton lastPress_{};
};

}  // namespace velto
