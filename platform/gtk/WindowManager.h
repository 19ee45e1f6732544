#pragma once

#include <gtk/gtk.h>

namespace velto {

/// What is said to the desktop's window manager about one toplevel of ours, past what GDK says. The toplevel
/// must be realized.
namespace window_manager {

/// The person asked for this window: above all others and with the keyboard, now. Focus stealing prevention
/// lets it pass, because it is stamped with the server's present time and marked as the person's own request.
/// Also works where there is no window manager.
void showAndFocus(GtkWindow* window);
/// The same for a window that is shown already.
void focus(GtkWindow* window);
/// Above all others; the keyboard stays where it is.
void showWithoutFocus(GtkWindow* window);
/// Whether the window manager knows this state and the shown window has it, as in "_NET_WM_STATE_ABOVE". GDK
/// does not follow all of them.
bool hasState(GtkWindow* window, const char* state);
/// Whether there is a window manager that knows this name, as in "_NET_ACTIVE_WINDOW".
bool supports(GdkDisplay* display, const char* hint);

}  // namespace window_manager

}  // namespace velto
