#include "platform/gtk/GtkAlert.h"

#include <algorithm>
#include <utility>

#include "platform/gtk/GObject.h"

namespace velto {

namespace {

constexpr glong kMostCharacters = 2000;
constexpr int kMostLines = 25;
/// In characters of average width.
constexpr int kLineWidth = 60;
constexpr int kButtonWidth = 40;
constexpr int kLeastFieldWidth = 200;
constexpr int kLeastFieldHeight = 24;

GtkWidget* makeDialog(const Alert& alert) {
  const GtkMessageType type = alert.style == Alert::Style::warning ? GTK_MESSAGE_WARNING : GTK_MESSAGE_INFO;
  GtkWidget* const dialog = gtk_message_dialog_new(nullptr, GtkDialogFlags{}, type, GTK_BUTTONS_NONE, "%s",
                                                   textForAlert(alert.messageText).c_str());
  if (!alert.informativeText.empty()) {
    gtk_message_dialog_format_secondary_text(GTK_MESSAGE_DIALOG(dialog), "%s",
                                             textForAlert(alert.informativeText).c_str());
  }
  return dialog;
}

/// However long its words are, a text stays on the screen.
void wrapAnywhere(GtkWidget* widget, gpointer) {
  if (GTK_IS_LABEL(widget) == FALSE) return;
  gtk_label_set_line_wrap_mode(GTK_LABEL(widget), PANGO_WRAP_WORD_CHAR);
  gtk_label_set_max_width_chars(GTK_LABEL(widget), kLineWidth);
}

void shorten(GtkWidget* button) {
  GtkWidget* const label = gtk_bin_get_child(GTK_BIN(button));
  if (GTK_IS_LABEL(label) == FALSE) return;
  gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_END);
  gtk_label_set_max_width_chars(GTK_LABEL(label), kButtonWidth);
}

}  // namespace

std::string textForAlert(std::string_view text) {
  // Cut in bytes first: making an endless text valid would take as long as the text.
  constexpr std::size_t kMostBytes = kMostCharacters * 4;
  bool cut = text.size() > kMostBytes;
  const GCharPtr valid(
      g_utf8_make_valid(text.data(), static_cast<gssize>(std::min(text.size(), kMostBytes))));
  char* end = valid.get();
  int lines = 1;
  for (glong count = 0; *end != '\0' && count < kMostCharacters && lines <= kMostLines; ++count) {
    if (*end == '\n') ++lines;
    end = g_utf8_next_char(end);
  }
  cut = cut || *end != '\0';
  return std::string(valid.get(), end) + (cut ? "…" : "");
}

GtkAlert::GtkAlert(const Alert& alert, const Place& place, AlertCompletion answered)
    : GtkSheet(makeDialog(alert), place),
      dismissAnswer_(alert.dismissAnswer()),
      answered_(std::move(answered)) {
  gtk_window_set_title(GTK_WINDOW(widget()), g_get_application_name());
  gtk_container_foreach(messageArea(), wrapAnywhere, nullptr);
  addTextField(alert);
  addButtons(alert);
  present();
}

GtkContainer* GtkAlert::messageArea() const {
  return GTK_CONTAINER(gtk_message_dialog_get_message_area(GTK_MESSAGE_DIALOG(widget())));
}

void GtkAlert::addTextField(const Alert& alert) {
  if (!alert.textField) return;
  entry_ = gtk_entry_new();
  const GCharPtr text(
      g_utf8_make_valid(alert.textField->c_str(), static_cast<gssize>(alert.textField->size())));
  gtk_entry_set_text(GTK_ENTRY(entry_), text.get());
  gtk_widget_set_size_request(entry_, kLeastFieldWidth, kLeastFieldHeight);
  gtk_entry_set_activates_default(GTK_ENTRY(entry_), TRUE);
  gtk_container_add(messageArea(), entry_);
  gtk_widget_show(entry_);
}

void GtkAlert::addButtons(const Alert& alert) {
  for (std::size_t i = 0; i < alert.buttons.size(); ++i) {
    shorten(gtk_dialog_add_button(dialog(), alert.buttons[i].c_str(), static_cast<int>(i)));
  }
  gtk_dialog_set_default_response(dialog(), 0);
  GtkWidget* const first = gtk_dialog_get_widget_for_response(dialog(), 0);
  if (GtkWidget* const focus = entry_ != nullptr ? entry_ : first) gtk_widget_grab_focus(focus);
}

void GtkAlert::responded(int response) {
  if (response < 0) return dismiss();
  answer(static_cast<std::size_t>(response));
}

void GtkAlert::dismiss() { answer(dismissAnswer_); }

bool GtkAlert::click(std::size_t button) {
  GtkWidget* const widget = gtk_dialog_get_widget_for_response(dialog(), static_cast<int>(button));
  if (widget == nullptr) return false;
  gtk_button_clicked(GTK_BUTTON(widget));
  return true;
}

void GtkAlert::type(const std::string& text) {
  if (entry_ != nullptr) gtk_entry_set_text(GTK_ENTRY(entry_), text.c_str());
}

void GtkAlert::answer(std::size_t button) {
  const AlertCompletion answered = std::exchange(answered_, nullptr);
  if (!answered) return;
  hide();
  answered({button, entry_ != nullptr ? textOf(gtk_entry_get_text(GTK_ENTRY(entry_))) : std::string()});
}

}  // namespace velto
