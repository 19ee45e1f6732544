#pragma once

#include <string_view>

#include "platform/headless/HeadlessWindowSystem.h"
#include "platform/ui/PointerTracker.h"
#include "platform/ui/Window.h"

namespace velto {

/// The test's pointer and keyboard.
///
/// Points are in the window's content coordinates. An event goes to the deepest view under the pointer and
/// then up its superviews until one uses it. Views are told of it as `PointerTracker` says, though not while
/// a button is down. A press gives the window the keyboard; what uses the press gets the drags and the
/// release. A press that no view uses moves a window that is movable by its background. Everything throws
/// `std::logic_error` when the window is not on the screen.
class HeadlessInput {
 public:
  struct Press {
    int button = 1;
    int clickCount = 1;
    Modifiers modifiers;
  };

  HeadlessInput(HeadlessWindowSystem& windowSystem, const Clock& clock);

  void moveMouse(Window& window, Point point, Modifiers modifiers = {});
  /// The pointer leaves all windows.
  void moveMouseAway();
  void press(Window& window, Point point) { press(window, point, Press()); }
  void press(Window& window, Point point, const Press& press);
  /// With the button down. A press of another button meanwhile goes nowhere.
  void drag(Window& window, Point point);
  /// The same, at a point of the screen; the window may have moved under the pointer meanwhile.
  void dragOnScreen(Window& window, Point screenPoint);
  void release(Window& window, Point point);
  void click(Window& window, Point point);
  /// In the middle of the view with that identifier, or of what covers it. Throws when there is no such view.
  void click(Window& window, std::string_view identifier);

  /// A key with modifiers other than shift is offered as a key equivalent first; then the window gets it,
  /// then its page. The event's time is set from the clock. Throws when the window does not have the
  /// keyboard.
  void key(Window& window, KeyEvent event);

 private:
  void track(Window& window, const MouseEvent& event);
  /// The release of the press that is held will not come.
  void losePress();
  void dragTo(const MouseEvent& event);

  HeadlessWindowSystem& windowSystem_;
  const Clock& clock_;
  PointerTracker tracker_;
  /// The window that the pointer is over.
  WeakPtr<Window> over_;
  Press press_;
  /// The window that was pressed.
  WeakPtr<Window> pressed_;
  /// What used the press, or the window that the press moves.
  WeakPtr<View> holder_;
  WeakPtr<Window> moving_;
  Point lastScreenPoint_;
};

/// The view with the identifier in the window's content, the content view included, depth first; or null.
View* findView(const Window& window, std::string_view identifier);

}  // namespace velto
