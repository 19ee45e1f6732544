#pragma once

#include <array>
#include <optional>
#include <string>

#include <gtk/gtk.h>

#include "platform/gtk/FrameKeeper.h"
#include "platform/gtk/GObject.h"
#include "platform/gtk/GtkViewPeer.h"
#include "platform/gtk/PointerRouter.h"
#include "platform/gtk/WindowShape.h"
#include "platform/ui/Window.h"

namespace velto {

class GtkWindowSystem;

/// The toplevel of a window: no decoration, no size of its own accord, in a window group of its own so that
/// its alerts stop it alone.
class GtkWindowPeer final : public WindowPeer, private ViewEventSink {
 public:
  GtkWindowPeer(Window& window, GtkWindowSystem& system);
  ~GtkWindowPeer() override;
  GtkWindowPeer(const GtkWindowPeer&) = delete;
  GtkWindowPeer& operator=(const GtkWindowPeer&) = delete;

  void contentViewChanged() override;
  void frameChanged() override { frame_.request(); }
  void attributesChanged() override;
  void order(Order order) override;
  void setMiniaturized(bool miniaturized) override;
  [[nodiscard]] int grantedLevel() const override;

  /// Above all windows and with the keyboard. False when the window is not shown.
  bool activate();
  void screensChanged() { frame_.screensChanged(); }
  [[nodiscard]] bool isNonactivating() const { return window_.isNonactivating(); }
  [[nodiscard]] GtkWindow* toplevel() const { return GTK_WINDOW(widget_.get()); }

 private:
  struct KeyStroke {
    guint32 time = 0;
    guint16 code = 0;
    guint state = 0;
    bool operator==(const KeyStroke&) const = default;
  };

  static gboolean onDelete(GtkWidget*, GdkEvent*, gpointer self);
  static gboolean onConfigure(GtkWidget*, GdkEvent*, gpointer self);
  static gboolean onMap(GtkWidget*, GdkEvent*, gpointer self);
  static gboolean onFocusIn(GtkWidget*, GdkEvent*, gpointer self);
  static gboolean onFocusOut(GtkWidget*, GdkEvent*, gpointer self);
  static gboolean onLeave(GtkWidget* widget, GdkEvent* event, gpointer self);
  static gboolean onState(GtkWidget*, GdkEvent* event, gpointer self);
  static gboolean onKeyPress(GtkWidget*, GdkEvent* event, gpointer self);

  void pointerEvent(View& view, const GdkEvent& event) override;
  void nativeWidgetPressed(const GdkEvent& event) override;
  void pressed(const GdkEventButton& button);
  bool keyPressed(const GdkEventKey& event);
  void orderOut();
  void realize();
  void setIdentifier(const std::string& identifier);
  void setBehavior(unsigned behavior);
  void setGeometryHints();
  void setThemeVariant();
  void focusPage();

  Window& window_;
  GtkWindowSystem& system_;
  GObjectPtr<GtkWidget> widget_;
  GObjectPtr<GtkWindowGroup> group_;
  FrameKeeper frame_;
  PointerRouter pointer_;
  WindowShape shape_;
  /// What the toplevel was told last.
  std::optional<Window::Attributes> told_;
  KeyStroke lastKey_;
  WorkItem stateCheck_;
  std::array<SignalConnection, 8> connections_;
};

}  // namespace velto
