#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <cairomm/context.h>

#include "platform/foundation/Geometry.h"
#include "platform/foundation/WeakPtr.h"
#include "platform/ui/Event.h"

namespace velto {

class View;
class Window;

/// What a backend keeps for a view that it shows. The view has changed already when one of these is called.
class ViewPeer {
 public:
  virtual ~ViewPeer() = default;
  virtual void frameChanged() = 0;
  virtual void subviewsChanged() = 0;
  /// `hidden`, `alpha`, `passesPointerThrough`, `cursor` or an accessibility text.
  virtual void appearanceChanged() = 0;
  virtual void needsDisplay() = 0;
};

/// How a view follows when its superview changes size: which of its sides and margins stretch.
struct Autoresizing {
  bool minXMargin = false;
  bool width = false;
  bool maxXMargin = false;
  bool minYMargin = false;
  bool height = false;
  bool maxYMargin = false;
};

/// A rectangle of a window that draws and takes events; the tree of these is a window's content.
///
/// A view owns its subviews. Its frame is in its superview's coordinates, its bounds start at (0, 0); both
/// have y upwards. Later subviews lie above earlier ones. The tree changes its own state first and the
/// backend follows through the peer, so nothing here waits for a widget. Main thread only.
class View : public Weakable {
 public:
  View() = default;
  explicit View(const Rect& frame) : frame_(frame) {}
  virtual ~View();
  View(const View&) = delete;
  View& operator=(const View&) = delete;

  [[nodiscard]] const Rect& frame() const { return frame_; }
  [[nodiscard]] Rect bounds() const { return {{0, 0}, frame_.size}; }
  /// A new size moves and stretches the subviews after their `autoresizing`.
  void setFrame(const Rect& frame);
  Autoresizing autoresizing;

  [[nodiscard]] View* superview() const { return superview_; }
  /// The window in whose content the view lies, or null.
  [[nodiscard]] Window* window() const;
  [[nodiscard]] const std::vector<std::unique_ptr<View>>& subviews() const { return subviews_; }
  /// Adds above all others and returns the view for convenience.
  template <class V>
  V& addSubview(std::unique_ptr<V> view) {
    V& added = *view;
    insertSubview(std::move(view));
    return added;
  }
  /// Gives the view back to the caller; null when it has no superview.
  std::unique_ptr<View> removeFromSuperview();

  [[nodiscard]] bool isHidden() const { return hidden_; }
  void setHidden(bool hidden);
  /// 0 transparent to 1 opaque; counts for the subviews too.
  [[nodiscard]] double alpha() const { return alpha_; }
  void setAlpha(double alpha);
  /// The view itself takes no pointer events; what lies below it does. Its subviews are asked all the same.
  [[nodiscard]] bool passesPointerThrough() const { return passesPointerThrough_; }
  void setPassesPointerThrough(bool passes);
  [[nodiscard]] Cursor cursor() const { return cursor_; }
  void setCursor(Cursor cursor);
  /// Grows the area on which the view is told that the pointer entered and left it by this much on each
  /// side, and makes that area count whatever lies above it. Without it, being entered means to be under the
  /// pointer with nothing above.
  [[nodiscard]] std::optional<double> trackingMargin() const { return trackingMargin_; }
  void setTrackingMargin(double margin) { trackingMargin_ = margin; }
  /// A stable name for tests and assistive technology, as in "hovrel-webview".
  [[nodiscard]] const std::string& identifier() const { return identifier_; }
  void setIdentifier(std::string identifier);
  [[nodiscard]] const std::string& accessibilityLabel() const { return accessibilityLabel_; }
  void setAccessibilityLabel(std::string label);

  /// The deepest visible view under the point (in the superview's coordinates) that takes pointer events, or
  /// null.
  [[nodiscard]] View* hitTest(Point point);
  /// From this view's coordinates to the window content's.
  [[nodiscard]] Point convertToContent(Point point) const;

  void setNeedsDisplay();
  /// Draws in the view's bounds, y upwards, before its subviews.
  virtual void draw(const Cairo::RefPtr<Cairo::Context>&) {}
  /// Draws this view and its subviews, for pictures of a tree without a display.
  void render(const Cairo::RefPtr<Cairo::Context>& context);

  /// True when the event was used; otherwise the superview is asked.
  virtual bool mouseDown(const MouseEvent&) { return false; }
  virtual bool mouseDragged(const MouseEvent&) { return false; }
  /// For the view that used the press, which gets the drags as well; presses of other buttons meanwhile reach
  /// nobody. When no release will come because the window was hidden or put away, it is told so far outside
  /// of it.
  virtual bool mouseUp(const MouseEvent&) { return false; }
  virtual bool mouseMoved(const MouseEvent&) { return false; }
  virtual void mouseEntered(const MouseEvent&) {}
  virtual void mouseExited(const MouseEvent&) {}

  /// The view came into a window or left it (null).
  virtual void didMoveToWindow(Window*) {}

  /// The backend's half; it is dropped when the view leaves its window. The backend alone calls these.
  void setPeer(std::unique_ptr<ViewPeer> peer) { peer_ = std::move(peer); }
  [[nodiscard]] ViewPeer* peer() const { return peer_.get(); }

 protected:
  /// After the frame's size changed and the subviews followed.
  virtual void didResize() {}

 private:
  friend class Window;
  void insertSubview(std::unique_ptr<View> view);
  void followSuperview(Size from, Size to);
  void tellMovedToWindow(Window* window);

  Rect frame_;
  View* superview_ = nullptr;
  Window* contentOf_ = nullptr;
  std::vector<std::unique_ptr<View>> subviews_;
  bool hidden_ = false;
  double alpha_ = 1;
  bool passesPointerThrough_ = false;
  Cursor cursor_ = Cursor::arrow;
  std::optional<double> trackingMargin_;
  std::string identifier_;
  std::string accessibilityLabel_;
  std::unique_ptr<ViewPeer> peer_;
};

/// The first direct subview of the given type, in order, or null.
template <class V>
V* firstSubview(const View& view) {
  for (const auto& subview : view.subviews()) {
    if (auto* found = dynamic_cast<V*>(subview.get())) return found;
  }
  return nullptr;
}

/// The first view of the given type below `view`, depth first, or null.
template <class V>
V* findDescendant(const View& view) {
  for (const auto& subview : view.subviews()) {
    if (auto* found = dynamic_cast<V*>(subview.get())) return found;
    if (auto* found = findDescendant<V>(*subview)) return found;
  }
  return nullptr;
}

}  // namespace velto
