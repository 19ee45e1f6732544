#include "platform/headless/HeadlessInput.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/headless/HeadlessWebView.h"

namespace velto {

namespace {

void requireOnScreen(const Window& window) {
  if (!window.isVisible() || window.isMiniaturized()) {
    throw std::logic_error("The window \"" + window.title() + "\" is not on the screen");
  }
}

View* viewAt(const Window& window, Point point) {
  return window.contentView() == nullptr ? nullptr : window.contentView()->hitTest(point);
}

Point onScreen(const Window& window, Point point) {
  return {window.frame().origin.x + point.x, window.frame().origin.y + point.y};
}

/// Its location is in the window content's coordinates until `seenBy` gives it to a view.
MouseEvent eventAt(const Window& window, Point point, const HeadlessInput::Press& press) {
  requireOnScreen(window);
  return {point, onScreen(window, point), press.button, press.clickCount, press.modifiers};
}

/// The view that used the event: `view` or the nearest of its superviews that did, or null.
WeakPtr<View> offer(View* view, bool (View::*handler)(const MouseEvent&), const MouseEvent& event) {
  WeakPtr<View> asked = view;
  while (asked) {
    if ((asked.get()->*handler)(eventSeenBy(*asked, event))) return asked;
    if (asked) asked = asked->superview();
  }
  return nullptr;
}

View* findIn(View& view, std::string_view identifier) {
  if (view.identifier() == identifier) return &view;
  for (const auto& subview : view.subviews()) {
    if (View* found = findIn(*subview, identifier)) return found;
  }
  return nullptr;
}

}  // namespace

View* findView(const Window& window, std::string_view identifier) {
  return window.contentView() == nullptr ? nullptr : findIn(*window.contentView(), identifier);
}

HeadlessInput::HeadlessInput(HeadlessWindowSystem& windowSystem, const Clock& clock)
    : windowSystem_(windowSystem), clock_(clock) {
  windowSystem_.setWindowLeftScreen([this](const Window& window) {
    if (pressed_.get() == &window) losePress();
    if (over_.get() == &window) moveMouseAway();
  });
}

void HeadlessInput::track(Window& window, const MouseEvent& event) {
  over_ = window;
  if (View* content = window.contentView()) return tracker_.moved(*content, event);
  tracker_.left();
}

void HeadlessInput::moveMouse(Window& window, Point point, Modifiers modifiers) {
  const WeakPtr<Window> moved = window;
  const MouseEvent event = eventAt(window, point, {0, 0, modifiers});
  track(window, event);
  if (moved && moved->isVisible()) offer(viewAt(window, point), &View::mouseMoved, event);
}

void HeadlessInput::moveMouseAway() {
  over_ = nullptr;
  tracker_.left();
}

void HeadlessInput::losePress() {
  moving_ = nullptr;
  const auto holder = std::exchange(holder_, nullptr);
  if (!holder || !pressed_ || pressed_->isClosed()) return;
  const MouseEvent event{MouseEvent::kNowhere, lastScreenPoint_, press_.button, press_.clickCount, {}};
  holder->mouseUp(event);
}

void HeadlessInput::press(Window& window, Point point, const Press& press) {
  if (holder_ && press.button != press_.button) return;
  const WeakPtr<Window> pressed = window;
  losePress();
  if (!pressed) return;
  moveMouse(window, point, press.modifiers);
  if (!pressed || !pressed->isVisible()) return;
  const MouseEvent event = eventAt(window, point, press);
  press_ = press;
  lastScreenPoint_ = event.screenLocation;
  pressed_ = window;
  windowSystem_.focus(&window);
  holder_ = pressed ? offer(viewAt(window, point), &View::mouseDown, event) : nullptr;
  if (pressed && !holder_ && window.attributes().movableByBackground && press.button == 1) moving_ = window;
}

void HeadlessInput::drag(Window& window, Point point) { dragTo(eventAt(window, point, press_)); }

void HeadlessInput::dragOnScreen(Window& window, Point screenPoint) {
  const Point origin = window.frame().origin;
  drag(window, {screenPoint.x - origin.x, screenPoint.y - origin.y});
}

void HeadlessInput::dragTo(const MouseEvent& event) {
  const Point from = std::exchange(lastScreenPoint_, event.screenLocation);
  if (holder_) {
    holder_->mouseDragged(eventSeenBy(*holder_, event));
  } else if (moving_) {
    Rect frame = moving_->frame();
    frame.origin.x += event.screenLocation.x - from.x;
    frame.origin.y += event.screenLocation.y - from.y;
    windowSystem_.moveByHand(*moving_, frame);
  }
}

void HeadlessInput::release(Window& window, Point point) {
  const MouseEvent event = eventAt(window, point, press_);
  const WeakPtr<Window> released = window;
  moving_ = nullptr;
  const auto holder = std::exchange(holder_, nullptr);
  if (holder) holder->mouseUp(eventSeenBy(*holder, event));
  if (released && released->isVisible()) track(window, event);
}

void HeadlessInput::click(Window& window, Point point) {
  const WeakPtr<Window> clicked = window;
  press(window, point);
  if (clicked && clicked->isVisible()) release(window, point);
}

void HeadlessInput::click(Window& window, std::string_view identifier) {
  const View* view = findView(window, identifier);
  if (view == nullptr) throw std::logic_error("There is no view \"" + std::string(identifier) + "\"");
  const Size size = view->frame().size;
  click(window, view->convertToContent({size.width / 2, size.height / 2}));
}

void HeadlessInput::key(Window& window, KeyEvent event) {
  if (!window.isKey())
    throw std::logic_error("The window \"" + window.title() + "\" does not have the keyboard");
  const WeakPtr<Window> typed = window;
  event.time = clock_.uptime();
  const Modifiers& held = event.modifiers;
  if ((held.command || held.control || held.option) && window.performKeyEquivalent(event)) return;
  if (!typed || window.keyDown(event) || !typed || window.contentView() == nullptr) return;
  if (auto* page = findDescendant<HeadlessWebView>(*window.contentView())) page->keyReceived(event);
}

}  // namespace velto
