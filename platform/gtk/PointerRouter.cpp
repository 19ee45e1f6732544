#include "platform/gtk/PointerRouter.h"

#include <cmath>
#include <utility>

#include <gtk/gtk.h>

#include "platform/gtk/KeyEvents.h"

namespace velto {

namespace {

constexpr guint kButtons = GDK_BUTTON1_MASK | GDK_BUTTON2_MASK | GDK_BUTTON3_MASK;

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
  const WeakPtr<View> view = at;
  MouseEvent mouse = describe(event);
  mouse.location.y = at.frame().size.height - mouse.location.y;
  MouseEvent inContent = mouse;
  inContent.location = at.convertToContent(mouse.location);
  switch (event.type) {
    case GDK_BUTTON_PRESS:
      return press(at, event.button, mouse);
    case GDK_BUTTON_RELEASE:
      return release(event.button, inContent);
    case GDK_MOTION_NOTIFY:
      if ((event.motion.state & kButtons) != 0) return drag(inContent);
      losePress();
      if (view) track(inContent);
      return view &&
             climb(at, mouse, [](View& v, const MouseEvent& e) { return v.mouseMoved(e); }) != nullptr;
    case GDK_ENTER_NOTIFY:
      if ((event.crossing.state & kButtons) == 0) track(inContent);
      return true;
    default:
      return false;
  }
}

void PointerRouter::track(const MouseEvent& inContent) {
  if (View* content = window_.contentView()) tracker_.moved(*content, inContent);
}

void PointerRouter::leave() {
  const WeakPtr<Window> window = window_;
  losePress();
  if (window) tracker_.left();
}

void PointerRouter::leave(const GdkEventCrossing& crossing) {
  if (crossing.detail != GDK_NOTIFY_INFERIOR && (crossing.state & kButtons) == 0) tracker_.left();
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
  if (pressed_ && button.button != pressedButton_) return true;
  const WeakPtr<View> view = at;
  losePress();
  if (!view) return true;
  countClick(button);
  event.button = static_cast<int>(button.button);
  event.clickCount = clickCount_;
  const WeakPtr<Window> window = window_;
  bool used = false;
  View* const taker = climb(at, event, [&](View& v, const MouseEvent& e) { return used = v.mouseDown(e); });
  if (!window || !used) return used;
  pressed_ = taker;
  pressedButton_ = button.button;
  lastScreenLocation_ = event.screenLocation;
  return true;
}

bool PointerRouter::drag(MouseEvent inContent) {
  if (!pressed_) return false;
  lastScreenLocation_ = inContent.screenLocation;
  inContent.button = static_cast<int>(pressedButton_);
  inContent.clickCount = clickCount_;
  return pressed_->mouseDragged(eventSeenBy(*pressed_, inContent));
}

void PointerRouter::losePress() {
  const auto taker = std::exchange(pressed_, nullptr);
  // What was closed has nothing to put in order.
  if (!taker || window_.isClosed()) return;
  MouseEvent event;
  event.location = MouseEvent::kNowhere;
  event.screenLocation = lastScreenLocation_;
  event.button = static_cast<int>(pressedButton_);
  event.clickCount = clickCount_;
  taker->mouseUp(event);
}

bool PointerRouter::release(const GdkEventButton& button, MouseEvent inContent) {
  if (pressed_ && button.button != pressedButton_) return true;
  const WeakPtr<Window> window = window_;
  const auto taker = std::exchange(pressed_, nullptr);
  inContent.button = static_cast<int>(button.button);
  inContent.clickCount = clickCount_;
  const bool used = taker && taker->mouseUp(eventSeenBy(*taker, inContent));
  // While a button is down nothing is entered or left; the pointer may be anywhere by now.
  if (window && window->isVisible()) track(inContent);
  return used;
}

}  // namespace velto
