#pragma once

#include <gtk/gtk.h>

#include "platform/gtk/GObject.h"

namespace velto {

/// A question on the screen: a dialog over its window that stops that window alone, or one on its own. The
/// loop runs on.
class GtkSheet {
 public:
  struct Place {
    /// Null for a dialog on its own.
    GtkWindow* parent = nullptr;
    bool keepAbove = false;
    bool mayTakeFocus = true;
  };

  virtual ~GtkSheet();
  GtkSheet(const GtkSheet&) = delete;
  GtkSheet& operator=(const GtkSheet&) = delete;

  /// Answers as the person does who turns the question down.
  virtual void dismiss() = 0;

 protected:
  /// Takes the toplevel that `gtk_dialog_new` and its kin gave.
  GtkSheet(GtkWidget* dialog, const Place& place);
  [[nodiscard]] GtkWidget* widget() const { return dialog_.get(); }
  [[nodiscard]] GtkDialog* dialog() const { return GTK_DIALOG(dialog_.get()); }
  /// Once the dialog is filled.
  void present();
  void hide() { gtk_widget_hide(dialog_.get()); }
  /// The person pressed a button, or (negative) Escape or the window's close button.
  virtual void responded(int response) = 0;

 private:
  static void onResponse(GtkDialog*, int response, gpointer self);

  GObjectPtr<GtkWidget> dialog_;
  Place place_;
  SignalConnection response_;
};

}  // namespace velto
