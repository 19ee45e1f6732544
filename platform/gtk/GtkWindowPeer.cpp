#include "platform/gtk/GtkWindowPeer.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include <gdk/gdkx.h>

#include "platform/gtk/GtkWindowSystem.h"
#include "platform/gtk/Guard.h"
#include "platform/gtk/KeyEvents.h"
#include "platform/gtk/NativeWidget.h"
#include "platform/gtk/WindowManager.h"
#include "platform/ui/Application.h"

namespace velto {

namespace {

/// Seconds in which a window manager has surely answered.
constexpr double kAnswerTime = 0.5;

GObjectPtr<GtkWidget> makeToplevel() {
  // GTK keeps one reference to a toplevel until it is destroyed; this is one more.
  auto widget = GObjectPtr<GtkWidget>::retain(gtk_window_new(GTK_WINDOW_TOPLEVEL));
  GtkWindow* const window = GTK_WINDOW(widget.get());
  gtk_window_set_decorated(window, FALSE);
  return widget;
}

/// Where it paints without a graphics processor, the engine paints its page as a whole or not at all: a part
/// that another window uncovers, or that a view above has changed, would stay empty.
void drawAsAWhole(GdkWindow* window, cairo_region_t* invalid) {
  const GdkRectangle whole{0, 0, gdk_window_get_width(window), gdk_window_get_height(window)};
  cairo_region_union_rectangle(invalid, &whole);
}

/// The X server paints a window with this when it comes up, until its first drawing, which in a new process
/// takes a moment. GDK forgets it when it sizes the window, and should: it would flicker.
void beWhiteUntilDrawn(GdkWindow* window) {
  Display* const display = GDK_WINDOW_XDISPLAY(window);
  XSetWindowBackground(display, GDK_WINDOW_XID(window), WhitePixel(display, DefaultScreen(display)));
}

bool isShortcut(const Modifiers& held) { return held.control || held.command || held.option; }

}  // namespace

GtkWindowPeer::GtkWindowPeer(Window& window, GtkWindowSystem& system)
    : window_(window),
      system_(system),
      widget_(makeToplevel()),
      group_(GObjectPtr<GtkWindowGroup>::adopt(gtk_window_group_new())),
      frame_(toplevel(), window, system.gtkScreens(), system.queue()),
      pointer_(window, system.gtkScreens()),
      shape_(toplevel(), window) {
  gtk_window_group_add_window(group_.get(), toplevel());
  GtkWidget* const widget = widget_.get();
  gtk_widget_add_events(widget, GDK_LEAVE_NOTIFY_MASK);
  connections_ = {SignalConnection(widget, "delete-event", G_CALLBACK(onDelete), this),
                  SignalConnection(widget, "configure-event", G_CALLBACK(onConfigure), this),
                  SignalConnection(widget, "map-event", G_CALLBACK(onMap), this),
                  SignalConnection(widget, "focus-in-event", G_CALLBACK(onFocusIn), this),
                  SignalConnection(widget, "focus-out-event", G_CALLBACK(onFocusOut), this),
                  SignalConnection(widget, "leave-notify-event", G_CALLBACK(onLeave), this),
                  SignalConnection(widget, "window-state-event", G_CALLBACK(onState), this),
                  SignalConnection(widget, "key-press-event", G_CALLBACK(onKeyPress), this)};
  attributesChanged();
  system_.peerAdded(*this);
}

GtkWindowPeer::~GtkWindowPeer() {
  stateCheck_.cancel();
  system_.peerRemoved(*this, window_);
  for (SignalConnection& connection : connections_) connection.disconnect();
  gtk_widget_destroy(widget_.get());
}

void GtkWindowPeer::contentViewChanged() {
  GtkWidget* const old = gtk_bin_get_child(GTK_BIN(widget_.get()));
  if (old != nullptr) gtk_container_remove(GTK_CONTAINER(widget_.get()), old);
  if (View* content = window_.contentView()) {
    gtk_container_add(GTK_CONTAINER(widget_.get()), GtkViewPeer::attach(*content, *this));
  }
}

void GtkWindowPeer::attributesChanged() {
  const Window::Attributes& wanted = window_.attributes();
  // The alpha changes many times a second; the rest need not be said again.
  const auto changed = [&](auto field) { return !told_ || (*told_).*field != wanted.*field; };
  using Attributes = Window::Attributes;
  if (changed(&Attributes::title)) gtk_window_set_title(toplevel(), wanted.title.c_str());
  if (changed(&Attributes::identifier)) setIdentifier(wanted.identifier);
  if (changed(&Attributes::level)) {
    gtk_window_set_keep_above(toplevel(), wanted.level >= kFloatingWindowLevel ? TRUE : FALSE);
  }
  if (changed(&Attributes::collectionBehavior)) setBehavior(wanted.collectionBehavior);
  if (changed(&Attributes::minSize)) setGeometryHints();
  if (changed(&Attributes::darkAppearance)) setThemeVariant();
  told_ = wanted;
  shape_.attributesChanged();
}

void GtkWindowPeer::setIdentifier(const std::string& identifier) {
  gtk_widget_set_name(widget_.get(), identifier.c_str());
  gtk_window_set_role(toplevel(), identifier.c_str());
  atk_object_set_accessible_id(gtk_widget_get_accessible(widget_.get()), identifier.c_str());
}

void GtkWindowPeer::setBehavior(unsigned behavior) {
  if ((behavior & collection_behavior::kCanJoinAllSpaces) != 0) {
    gtk_window_stick(toplevel());
  } else {
    gtk_window_unstick(toplevel());
  }
  const bool listed = (behavior & collection_behavior::kIgnoresCycle) == 0;
  gtk_window_set_skip_taskbar_hint(toplevel(), listed ? FALSE : TRUE);
  gtk_window_set_skip_pager_hint(toplevel(), listed ? FALSE : TRUE);
}

void GtkWindowPeer::setGeometryHints() {
  // Both marks say that the place and the size are the person's, which window managers leave alone.
  const auto asked = static_cast<GdkWindowHints>(GDK_HINT_USER_POS | GDK_HINT_USER_SIZE | GDK_HINT_MIN_SIZE);
  const Size least = window_.minSize();
  GdkGeometry geometry{};
  geometry.min_width = std::max(1, static_cast<int>(std::lround(least.width)));
  geometry.min_height = std::max(1, static_cast<int>(std::lround(least.height)));
  gtk_window_set_geometry_hints(toplevel(), nullptr, &geometry, asked);
}

void GtkWindowPeer::setThemeVariant() {
  GdkWindow* const gdk = gtk_widget_get_window(widget_.get());
  if (gdk == nullptr) return;
  std::string variant = "dark";  // GDK takes a text that it could change.
  gdk_x11_window_set_theme_variant(gdk, window_.hasDarkAppearance() ? variant.data() : nullptr);
}

/// Late, because the first one of a run reads style sheets and icons, while the page's process could be
/// starting.
void GtkWindowPeer::realize() {
  if (gtk_widget_get_realized(widget_.get()) != FALSE) return;
  gtk_widget_realize(widget_.get());
  gdk_window_set_invalidate_handler(gtk_widget_get_window(widget_.get()), drawAsAWhole);
  setThemeVariant();
}

void GtkWindowPeer::order(Order order) {
  if (order == Order::out) {
    return orderOut();
  }
  realize();
  shape_.update();
  if (gtk_widget_get_visible(widget_.get()) == FALSE) {
    frame_.willShow();
    if (window_.isOpaque()) beWhiteUntilDrawn(gtk_widget_get_window(widget_.get()));
  }
  if (order == Order::frontAndKey) {
    focusPage();
    system_.focus().expect(window_);
    window_manager::showAndFocus(toplevel());
  } else {
    window_manager::showWithoutFocus(toplevel());
  }
}

void GtkWindowPeer::orderOut() {
  gtk_widget_hide(widget_.get());
  if (window_.isClosed()) system_.windowGone(window_);
  // The last, because those who are told may drop the window.
  pointer_.leave();
}

bool GtkWindowPeer::activate() {
  if (gtk_widget_get_visible(widget_.get()) == FALSE) return false;
  window_manager::focus(toplevel());
  return true;
}

/// Keys go to the page unless something else in the window was given them.
void GtkWindowPeer::focusPage() {
  if (gtk_window_get_focus(toplevel()) != nullptr || window_.contentView() == nullptr) return;
  if (auto* const page = findDescendant<NativeWidgetView>(*window_.contentView())) {
    gtk_widget_grab_focus(page->nativeWidget());
  }
}

void GtkWindowPeer::setMiniaturized(bool miniaturized) {
  if (miniaturized) {
    gtk_window_iconify(toplevel());
  } else {
    gtk_window_deiconify(toplevel());
  }
  // A window manager that refuses does not say so.
  stateCheck_.cancel();
  stateCheck_ = system_.queue().after(kAnswerTime, [this] {
    GdkWindow* const gdk = gtk_widget_get_window(widget_.get());
    if (gdk == nullptr) return;
    const auto state = gdk_window_get_state(gdk);
    window_.backendSetMiniaturized((state & GDK_WINDOW_STATE_ICONIFIED) != 0);
  });
}

int GtkWindowPeer::grantedLevel() const {
  return window_manager::hasState(toplevel(), "_NET_WM_STATE_ABOVE") ? kFloatingWindowLevel
                                                                     : kNormalWindowLevel;
}

gboolean GtkWindowPeer::onDelete(GtkWidget*, GdkEvent*, gpointer self) {
  guarded([&] { static_cast<GtkWindowPeer*>(self)->window_.close(); });
  return TRUE;
}

gboolean GtkWindowPeer::onConfigure(GtkWidget*, GdkEvent*, gpointer self) {
  guarded([&] { static_cast<GtkWindowPeer*>(self)->frame_.configured(); });
  return FALSE;
}

gboolean GtkWindowPeer::onMap(GtkWidget*, GdkEvent*, gpointer self) {
  guarded([&] { static_cast<GtkWindowPeer*>(self)->frame_.didShow(); });
  return FALSE;
}

gboolean GtkWindowPeer::onFocusIn(GtkWidget*, GdkEvent*, gpointer self) {
  auto* const peer = static_cast<GtkWindowPeer*>(self);
  peer->focusPage();
  guarded([&] { peer->system_.focus().focusIn(peer->window_); });
  return FALSE;
}

gboolean GtkWindowPeer::onFocusOut(GtkWidget*, GdkEvent*, gpointer self) {
  guarded([&] { static_cast<GtkWindowPeer*>(self)->system_.focus().focusOut(); });
  return FALSE;
}

gboolean GtkWindowPeer::onState(GtkWidget*, GdkEvent* event, gpointer self) {
  const GdkEventWindowState& state = event->window_state;
  if ((state.changed_mask & GDK_WINDOW_STATE_ICONIFIED) != 0) {
    const bool iconified = (state.new_window_state & GDK_WINDOW_STATE_ICONIFIED) != 0;
    auto* const peer = static_cast<GtkWindowPeer*>(self);
    peer->window_.backendSetMiniaturized(iconified);
    if (iconified) guarded([&] { peer->pointer_.leave(); });
  }
  return FALSE;
}

gboolean GtkWindowPeer::onLeave(GtkWidget* widget, GdkEvent* event, gpointer self) {
  if (event->any.window != gtk_widget_get_window(widget)) return FALSE;
  guarded([&] { static_cast<GtkWindowPeer*>(self)->pointer_.leave(event->crossing); });
  return FALSE;
}

gboolean GtkWindowPeer::onKeyPress(GtkWidget*, GdkEvent* event, gpointer self) {
  bool used = false;
  guarded([&] { used = static_cast<GtkWindowPeer*>(self)->keyPressed(event->key); });
  return used ? TRUE : FALSE;
}

bool GtkWindowPeer::keyPressed(const GdkEventKey& event) {
  // A page that had no use for a key sends the same event round once more, for GTK's own bindings.
  const KeyStroke stroke{event.time, event.hardware_keycode, event.state};
  if (event.is_modifier != 0 || std::exchange(lastKey_, stroke) == stroke) return false;
  KeyEvent key = keyEventOf(event);
  key.time = system_.clock().uptime();
  const WeakPtr<Window> window = window_;
  if (isShortcut(key.modifiers) && window->performKeyEquivalent(key)) return true;
  // A shortcut may have closed the window and dropped it without saying that it used the key.
  return !window || window->keyDown(key);
}

void GtkWindowPeer::pointerEvent(View& view, const GdkEvent& event) {
  const WeakPtr<Window> window = window_;
  const bool used = pointer_.route(view, event);
  if (event.type != GDK_BUTTON_PRESS || !window || window->isClosed()) return;
  pressed(event.button);
  if (used || event.button.button != 1 || !window->movableByBackground()) return;
  gtk_window_begin_move_drag(toplevel(), GDK_BUTTON_PRIMARY, static_cast<int>(event.button.x_root),
                             static_cast<int>(event.button.y_root), event.button.time);
}

void GtkWindowPeer::nativeWidgetPressed(const GdkEvent& event) {
  if (event.type == GDK_BUTTON_PRESS) pressed(event.button);
}

/// A window that does not come forward by itself, and any window where no window manager does it, gets the
/// keyboard when the person clicks it.
void GtkWindowPeer::pressed(const GdkEventButton& button) {
  if (gtk_window_is_active(toplevel()) != FALSE) return;
  const bool managed = window_manager::supports(gtk_widget_get_display(widget_.get()), "_NET_ACTIVE_WINDOW");
  if (window_.isNonactivating() || !managed) {
    gdk_window_focus(gtk_widget_get_window(widget_.get()), button.time);
  }
}

}  // namespace velto
