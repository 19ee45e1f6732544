#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include <gtk/gtk.h>

#include "platform/gtk/GtkSheet.h"
#include "platform/ui/Alert.h"

namespace velto {

/// An alert on the screen.
class GtkAlert final : public GtkSheet {
 public:
  /// `answered` is called once, from within the dialog's own signal; never by the destructor.
  GtkAlert(const Alert& alert, const Place& place, AlertCompletion answered);

  /// Answers as the alert says.
  void dismiss() override;
  /// Presses the button as the person does. False when the alert has no such button.
  bool click(std::size_t button);
  /// Fills in the alert's line of text, if it has one.
  void type(const std::string& text);

 private:
  void responded(int response) override;
  void addButtons(const Alert& alert);
  void addTextField(const Alert& alert);
  [[nodiscard]] GtkContainer* messageArea() const;
  void answer(std::size_t button);

  GtkWidget* entry_ = nullptr;
  std::size_t dismissAnswer_;
  AlertCompletion answered_;
};

/// What fits into a dialog: valid UTF-8, a page's endless text cut off with an ellipsis.
std::string textForAlert(std::string_view text);

}  // namespace velto
