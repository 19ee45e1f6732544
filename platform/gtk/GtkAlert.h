#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include <gtk/gtk.h>

#include "platform/gtk/GObject.h"
#include "platform/ui/Alert.h"

namespace velto {

/// An alert on the screen: a dialog over its window that stops that window alone. The loop runs on.
class GtkAlert {
 public:
  /// Over `parent` when there is one. `answered` is called once, from within the dialog's own signal; never
  /// by the destructor.
  GtkAlert(const Alert& alert, GtkWindow* parent, bool keepAbove, bool mayTakeFocus,
           AlertCompletion answered);
  ~GtkAlert();
  GtkAlert(const GtkAlert&) = delete;
  GtkAlert& operator=(const GtkAlert&) = delete;

  /// Answers with the last button.
  void dismiss();
  /// Presses the button as the person does. False when the alert has no such button.
  bool click(std::size_t button);
  /// Fills in the alert's line of text, if it has one.
  void type(const std::string& text);

 private:
  static void onResponse(GtkDialog*, int response, gpointer self);
  void addButtons(const Alert& alert);
  void addTextField(const Alert& alert);
  void answer(std::size_t button);

  GObjectPtr<GtkWidget> dialog_;
  GtkWidget* entry_ = nullptr;
  std::size_t buttonCount_;
  AlertCompletion answered_;
  SignalConnection response_;
};

/// What fits into a dialog: valid UTF-8, a page's endless text cut off with an ellipsis.
std::string textForAlert(std::string_view text);

}  // namespace velto
