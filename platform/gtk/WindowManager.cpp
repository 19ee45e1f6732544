#include "platform/gtk/WindowManager.h"

#include <algorithm>
#include <memory>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <gdk/gdkx.h>

namespace velto {

namespace {

GdkWindow* gdkWindow(GtkWindow* window) { return gtk_widget_get_window(GTK_WIDGET(window)); }

/// EWMH: 1 is a program's own wish, 2 the person's.
constexpr long kAskedByPerson = 2;

void sendActivation(GdkDisplay* display, GdkWindow* window, guint32 time) {
  Display* const x = gdk_x11_display_get_xdisplay(display);
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = GDK_WINDOW_XID(window);
  event.xclient.message_type = gdk_x11_get_xatom_by_name_for_display(display, "_NET_ACTIVE_WINDOW");
  event.xclient.format = 32;
  event.xclient.data.l[0] = kAskedByPerson;
  event.xclient.data.l[1] = static_cast<long>(time);
  gdk_x11_display_error_trap_push(display);
  XSendEvent(x, DefaultRootWindow(x), False, SubstructureRedirectMask | SubstructureNotifyMask, &event);
  gdk_x11_display_error_trap_pop_ignored(display);
}

/// Without a window manager: only a window that is on the screen can be given the keyboard.
void takeKeyboard(GdkDisplay* display, GdkWindow* window, guint32 time) {
  Display* const x = gdk_x11_display_get_xdisplay(display);
  gdk_x11_display_error_trap_push(display);
  XRaiseWindow(x, GDK_WINDOW_XID(window));
  XSetInputFocus(x, GDK_WINDOW_XID(window), RevertToParent, time);
  gdk_x11_display_error_trap_pop_ignored(display);
}

struct XFreeData {
  void operator()(unsigned char* data) const { XFree(data); }
};

bool propertyHolds(GdkDisplay* display, GdkWindow* window, Atom property, Atom wanted) {
  constexpr long kMost = 64;
  Atom type = None;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  gdk_x11_display_error_trap_push(display);
  const int failed =
      XGetWindowProperty(gdk_x11_display_get_xdisplay(display), GDK_WINDOW_XID(window), property, 0, kMost,
                         False, XA_ATOM, &type, &format, &count, &rest, &data);
  const int error = gdk_x11_display_error_trap_pop(display);
  const std::unique_ptr<unsigned char, XFreeData> owner(data);
  if (failed != Success || error != 0 || type != XA_ATOM || format != 32 || !owner) return false;
  // Xlib hands out items of 32 bits as longs.
  const auto* const atoms = reinterpret_cast<const Atom*>(data);
  return std::find(atoms, atoms + count, wanted) != atoms + count;
}

}  // namespace

void window_manager::focus(GtkWindow* window) {
  GdkWindow* const gdk = gdkWindow(window);
  GdkDisplay* const display = gdk_window_get_display(gdk);
  const guint32 time = gdk_x11_get_server_time(gdk);
  gdk_x11_window_set_user_time(gdk, time);
  if (supports(display, "_NET_ACTIVE_WINDOW")) {
    sendActivation(display, gdk, time);
  } else {
    takeKeyboard(display, gdk, time);
  }
}

void window_manager::showAndFocus(GtkWindow* window) {
  gtk_window_set_focus_on_map(window, TRUE);
  gdk_x11_window_set_user_time(gdkWindow(window), gdk_x11_get_server_time(gdkWindow(window)));
  gtk_widget_show(GTK_WIDGET(window));
  gtk_window_deiconify(window);
  focus(window);
}

void window_manager::showWithoutFocus(GtkWindow* window) {
  gtk_window_set_focus_on_map(window, FALSE);
  if (gtk_widget_get_mapped(GTK_WIDGET(window)) == FALSE) gdk_x11_window_set_user_time(gdkWindow(window), 0);
  gtk_widget_show(GTK_WIDGET(window));
  gdk_window_raise(gdkWindow(window));
}

bool window_manager::hasState(GtkWindow* window, const char* state) {
  if (gtk_widget_get_mapped(GTK_WIDGET(window)) == FALSE) return false;
  GdkWindow* const gdk = gdkWindow(window);
  GdkDisplay* const display = gdk_window_get_display(gdk);
  if (!supports(display, state)) return false;
  return propertyHolds(display, gdk, gdk_x11_get_xatom_by_name_for_display(display, "_NET_WM_STATE"),
                       gdk_x11_get_xatom_by_name_for_display(display, state));
}

bool window_manager::supports(GdkDisplay* display, const char* hint) {
  GdkScreen* const screen = gdk_display_get_default_screen(display);
  return gdk_x11_screen_supports_net_wm_hint(screen, gdk_atom_intern(hint, FALSE)) != FALSE;
}

}  // namespace velto
