#include "platform/gtk/GtkSheet.h"

#include <gdk/gdkx.h>

#include "platform/gtk/Guard.h"

namespace velto {

GtkSheet::GtkSheet(GtkWidget* dialog, const Place& place)
    : dialog_(GObjectPtr<GtkWidget>::retain(dialog)),
      place_(place),
      response_(dialog, "response", G_CALLBACK(onResponse), this) {
  GtkWindow* const window = GTK_WINDOW(dialog);
  const bool over = place_.parent != nullptr;
  gtk_window_set_transient_for(window, place_.parent);
  gtk_window_set_modal(window, over ? TRUE : FALSE);
  gtk_window_set_position(window, over ? GTK_WIN_POS_CENTER_ON_PARENT : GTK_WIN_POS_CENTER);
  gtk_window_set_keep_above(window, place_.keepAbove ? TRUE : FALSE);
  gtk_window_set_focus_on_map(window, place_.mayTakeFocus ? TRUE : FALSE);
}

GtkSheet::~GtkSheet() {
  response_.disconnect();
  gtk_widget_destroy(dialog_.get());
}

void GtkSheet::present() {
  if (place_.mayTakeFocus) {
    gtk_widget_realize(dialog_.get());
    GdkWindow* const gdk = gtk_widget_get_window(dialog_.get());
    gdk_x11_window_set_user_time(gdk, gdk_x11_get_server_time(gdk));
  }
  gtk_widget_show(dialog_.get());
}

void GtkSheet::onResponse(GtkDialog*, int response, gpointer self) {
  guarded([&] { static_cast<GtkSheet*>(self)->responded(response); });
}

}  // namespace velto
