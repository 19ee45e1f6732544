#include "platform/gtk/PointerRouter.h"

#include <cmath>

#include <gtk/gtk.h>

#include "platform/gtk/KeyEvents.h"

namespace velto {

namespace {

/// The point of one view's coordinates in those of another view of the same content.
Point convert(Point point, const View& from, const View& to) {
  const Point inContent = from.convertToContent(point);
  const Point origin = to.convertToContent({0, 0});
  return {inContent.x - origin.x, inContent.y - origin.y};
}

/// Asks the view and then its superviews; gives the one that used the event, or null.
template <class Ask>
View* climb(View& from, MouseEvent event, const Ask& ask) {
  WeakPtr<View> view = from;
  while (view) {
    WeakPtr<View> above = view->superview();
    const Point offset = view->frame().origin;
    if (ask(*view, event)) return view.get();
    view = above;
    event.location = {event.location.x + offset.x, event.location.y + offset.y};
  }
  return nullptr;
}

}  // namespace

bool PointerRouter::route(View& at, const GdkEvent& event) {
  MouseEvent mouse = describe(event);
  mouse.location.y = at.frame().size.height - mouse.location.y;
  switch (event.type) {
    case GDK_BUTTON_PRESS:
      return press(at, event.button, mouse);
    case GDK_BUTTON_RELEASE:
      return release(event.button, at, mouse);
    case GDK_MOTION_NOTIFY:
      return move(at, event.motion, mouse);
    case GDK_ENTER_NOTIFY:
      if (event.crossing.detail != GDK_NOTIFY_INFERIOR) at.mouseEntered(mouse);
      return true;
    case GDK_LEAVE_NOTIFY:
      if (event.crossing.detail != GDK_NOTIFY_INFERIOR) at.mouseExited(mouse);
      return true;
    default:
      return false;
  }
}

MouseEvent PointerRouter::describe(const GdkEvent& event) const {
  MouseEvent mouse;
  gdk_event_get_coords(&event, &mouse.location.x, &mouse.location.y);
  Point root;
  gdk_event_get_root_coords(&event, &root.x, &root.y);
  mouse.screenLocation = screens_.geometry().fromX(root);
  GdkModifierType state{};
  gdk_event_get_state(&event, &state);
  mouse.modifiers = modifiersOf(state);
  return mouse;
}

void PointerRouter::countClick(const GdkEventButton& button) {
  int time = 0;
  int distance = 0;
  g_object_get(gtk_settings_get_default(), "gtk-double-click-time", &time, "gtk-double-click-distance",
               &distance, nullptr);
  const bool again = clickCount_ > 0 && button.button == lastPress_.button &&
                     button.time - lastPress_.time <= static_cast<guint32>(time) &&
                     std::abs(button.x_root - lastPress_.x_root) <= distance &&
                     std::abs(button.y_root - lastPress_.y_root) <= distance;
  clickCount_ = again ? clickCount_ + 1 : 1;
  lastPress_ = button;
}

bool PointerRouter::press(View& at, const GdkEventButton& button, MouseEvent event) {
  countClick(button);
  event.button = static_cast<int>(button.button);
  event.clickCount = clickCount_;
  pressed_ = nullptr;
  const WeakPtr<Window> window = window_;
  bool used = false;
  View* const taker =
      climb(at, event, [&](View& view, const MouseEvent& e) { return used = view.mouseDown(e); });
  if (!window || !used) return used;
  pressed_ = taker;
  pressedButton_ = button.button;
  return true;
}

bool PointerRouter::move(View& at, const GdkEventMotion& motion, MouseEvent event) {
  constexpr guint kButtons = GDK_BUTTON1_MASK | GDK_BUTTON2_MASK | GDK_BUTTON3_MASK;
  if ((motion.state & kButtons) == 0) {
    pressed_ = nullptr;
    return climb(at, event, [](View& view, const MouseEvent& e) { return view.mouseMoved(e); }) != nullptr;
  }
  if (!pressed_) return false;
  event.location = convert(event.location, at, *pressed_);
  event.button = static_cast<int>(pressedButton_);
  event.clickCount = clickCount_;
  return pressed_->mouseDragged(event);
}

bool PointerRouter::release(const GdkEventButton& button, const View& at, MouseEvent event) {
  if (!pressed_ || button.button != pressedButton_) return false;
  View& taker = *pressed_;
  pressed_ = nullptr;
  event.location = convert(event.location, at, taker);
  event.button = static_cast<int>(button.button);
  event.clickCount = clickCount_;
  return taker.mouseUp(event);
}

}  // namespace velto
