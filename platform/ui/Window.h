#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/foundation/Geometry.h"
#include "platform/foundation/WeakPtr.h"
#include "platform/ui/Animator.h"
#include "platform/ui/Event.h"
#include "platform/ui/Screen.h"
#include "platform/ui/View.h"

namespace velto {

class Application;
class Window;

/// The bits of a window's style.
namespace style_mask {
constexpr unsigned kTitled = 1U << 0;
constexpr unsigned kClosable = 1U << 1;
constexpr unsigned kMiniaturizable = 1U << 2;
constexpr unsigned kResizable = 1U << 3;
constexpr unsigned kNonactivatingPanel = 1U << 7;
constexpr unsigned kFullSizeContentView = 1U << 15;
}  // namespace style_mask

/// The bits of how a window behaves with virtual desktops.
namespace collection_behavior {
constexpr unsigned kCanJoinAllSpaces = 1U << 0;
constexpr unsigned kStationary = 1U << 4;
constexpr unsigned kIgnoresCycle = 1U << 6;
constexpr unsigned kFullScreenAuxiliary = 1U << 8;
}  // namespace collection_behavior

constexpr int kNormalWindowLevel = 0;
constexpr int kFloatingWindowLevel = 3;

/// Told of a window's life. Held weakly.
class WindowDelegate : public Weakable {
 public:
  virtual ~WindowDelegate() = default;
  virtual void windowDidBecomeKey(Window& window) = 0;
  /// False keeps the window open.
  virtual bool windowShouldClose(Window& window) = 0;
  virtual void windowWillClose(Window& window) = 0;
  virtual void windowDidMove(Window& window) = 0;
  virtual void windowDidResize(Window& window) = 0;
};

/// The backend's half of a window. The window has changed already when one of these is called.
class WindowPeer {
 public:
  enum class Order { frontAndKey, front, out };
  virtual ~WindowPeer() = default;
  virtual void contentViewChanged() = 0;
  virtual void frameChanged() = 0;
  /// Title, style, level, spaces, sizes, appearance.
  virtual void attributesChanged() = 0;
  virtual void order(Order order) = 0;
  virtual void setMiniaturized(bool miniaturized) = 0;
  /// The level that the desktop granted so far, read back from it.
  [[nodiscard]] virtual int grantedLevel() const = 0;
};

/// A window of the application.
///
/// Its frame is in global screen coordinates (see `Screen`); its windows have no border of the desktop's, so
/// the frame is the content's. A frame is held between the minimum size and `kMaximumSide` on each axis. Who
/// makes a window owns it; closing only takes it from the screen and tells the delegate, who may then drop
/// it, but not before the call is over. Main thread only.
class Window : public Weakable {
 public:
  /// No side of a window is longer, whatever was asked for: past this a display server runs out of memory.
  static constexpr double kMaximumSide = 10000;

  Window(Application& application, const Rect& frame, unsigned styleMask);
  virtual ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  [[nodiscard]] const Rect& frame() const { return frame_; }
  void setFrame(const Rect& frame);
  /// Goes there in some steps; a frame that is set meanwhile ends that.
  void animateFrame(const Rect& frame, const Animator& animator);
  void setFrameOrigin(Point origin) { setFrame({origin, frame_.size}); }
  /// In the middle of the visible area of its screen, a little above the centre.
  void center();
  /// The screen that shows most of the window, else the main one; absent when no display is there.
  [[nodiscard]] std::optional<Screen> screen() const;

  [[nodiscard]] unsigned styleMask() const { return styleMask_; }
  [[nodiscard]] bool isNonactivating() const { return (styleMask_ & style_mask::kNonactivatingPanel) != 0; }

  [[nodiscard]] const std::string& title() const { return attributes_.title; }
  void setTitle(std::string title);
  [[nodiscard]] int level() const { return attributes_.level; }
  void setLevel(int level);
  /// The level that the desktop granted; it follows `level` with a delay or not at all.
  [[nodiscard]] int grantedLevel() const;
  [[nodiscard]] unsigned collectionBehavior() const { return attributes_.collectionBehavior; }
  void setCollectionBehavior(unsigned behavior);
  [[nodiscard]] Size minSize() const { return attributes_.minSize; }
  void setMinSize(Size size);
  /// Width to height that a resize by hand keeps; (0, 0) means free.
  [[nodiscard]] Size contentAspectRatio() const { return attributes_.contentAspectRatio; }
  void setContentAspectRatio(Size ratio);
  [[nodiscard]] bool hasDarkAppearance() const { return attributes_.darkAppearance; }
  void setDarkAppearance(bool dark);
  [[nodiscard]] bool movableByBackground() const { return attributes_.movableByBackground; }
  void setMovableByBackground(bool movable);
  [[nodiscard]] bool hasShadow() const { return attributes_.shadow; }
  void setHasShadow(bool shadow);
  /// 0 invisible to 1 opaque, as far as the desktop can mix windows.
  [[nodiscard]] double alpha() const { return attributes_.alpha; }
  void setAlpha(double alpha);
  /// A window that is not opaque shows what lies behind it where its views draw nothing.
  [[nodiscard]] bool isOpaque() const { return attributes_.opaque; }
  void setOpaque(bool opaque);
  /// The pointer's events go to what lies behind the window.
  [[nodiscard]] bool ignoresMouseEvents() const { return attributes_.ignoresMouseEvents; }
  void setIgnoresMouseEvents(bool ignores);
  [[nodiscard]] const std::string& identifier() const { return attributes_.identifier; }
  void setIdentifier(std::string identifier);

  /// Fills the window. Null only before it is first set.
  [[nodiscard]] View* contentView() const { return contentView_.get(); }
  void setContentView(std::unique_ptr<View> view);

  void setDelegate(WeakPtr<WindowDelegate> delegate) { delegate_ = delegate; }

  [[nodiscard]] bool isVisible() const { return visible_; }
  [[nodiscard]] bool isKey() const;
  [[nodiscard]] bool isMiniaturized() const { return miniaturized_; }
  /// Shows the window above the others and asks for the keyboard.
  void makeKeyAndOrderFront();
  /// Shows the window above the others and leaves the keyboard where it is.
  void orderFrontRegardless();
  void orderOut();
  void miniaturize();
  void deminiaturize();
  /// To as much of its screen's visible area as its aspect ratio allows, or back to where it was before.
  void zoom();
  /// Asks the delegate, then closes for good.
  void close();
  [[nodiscard]] bool isClosed() const { return closed_; }

  /// True when the event was used up; otherwise it goes on to the focused view.
  virtual bool keyDown(const KeyEvent&) { return false; }
  /// A key with modifiers, before anything else sees it.
  virtual bool performKeyEquivalent(const KeyEvent&) { return false; }

  /// @name What the backend reports
  /// @{
  void backendMovedTo(const Rect& frame);
  void backendSetMiniaturized(bool miniaturized) { miniaturized_ = miniaturized; }
  void backendBecameKey();
  /// @}

  struct Attributes {
    std::string title;
    std::string identifier;
    int level = kNormalWindowLevel;
    unsigned collectionBehavior = 0;
    Size minSize;
    Size contentAspectRatio;
    bool darkAppearance = false;
    bool movableByBackground = false;
    bool shadow = true;
    double alpha = 1;
    bool opaque = true;
    bool ignoresMouseEvents = false;
  };
  [[nodiscard]] const Attributes& attributes() const { return attributes_; }
  [[nodiscard]] WindowPeer* peer() const { return peer_.get(); }
  [[nodiscard]] Application& application() const { return application_; }

 private:
  template <class T>
  void change(T& field, T value);
  [[nodiscard]] Rect constrained(const Rect& frame) const;
  void takeFrame(const Rect& frame);
  void putFrame(const Rect& frame);
  [[nodiscard]] Rect standardFrame(const Rect& area) const;

  Application& application_;
  Rect frame_;
  unsigned styleMask_;
  Attributes attributes_;
  bool visible_ = false;
  bool miniaturized_ = false;
  bool closed_ = false;
  WeakPtr<WindowDelegate> delegate_;
  std::unique_ptr<WindowPeer> peer_;
  std::unique_ptr<View> contentView_;
  Animation frameAnimation_;
  /// Where a zoomed window was.
  std::optional<Rect> unzoomedFrame_;
};

/// A window that helps another task: it floats, and may stay out of the keyboard's way.
class Panel : public Window {
 public:
  using Window::Window;
};

}  // namespace velto
