#include "platform/gtk/GtkOpenPanel.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace velto {

namespace {

/// A page may name any number of kinds.
constexpr std::size_t kMostTypes = 100;

GtkWidget* makeDialog(const OpenPanel& panel) {
  const auto action =
      panel.choosesDirectories ? GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER : GTK_FILE_CHOOSER_ACTION_OPEN;
  return gtk_file_chooser_dialog_new(g_get_application_name(), nullptr, action, "Cancel", GTK_RESPONSE_CANCEL,
                                     "Open", GTK_RESPONSE_ACCEPT, nullptr);
}

/// The filter is floating; the chooser takes it.
GtkFileFilter* namedFilter(const char* name) {
  GtkFileFilter* const filter = gtk_file_filter_new();
  gtk_file_filter_set_name(filter, name);
  return filter;
}

/// A page may write anything where a kind of file belongs; only what can be one is handed on.
bool isMimeType(const std::string& text) {
  const auto allowed = [](char c) { return g_ascii_isalnum(c) || std::string_view("/*+-._").contains(c); };
  return std::count(text.begin(), text.end(), '/') == 1 && std::all_of(text.begin(), text.end(), allowed);
}

}  // namespace

GtkOpenPanel::GtkOpenPanel(const OpenPanel& panel, const Place& place, OpenPanelCompletion answered)
    : GtkSheet(makeDialog(panel), place), answered_(std::move(answered)) {
  GtkFileChooser* const chooser = GTK_FILE_CHOOSER(widget());
  gtk_file_chooser_set_select_multiple(chooser, panel.allowsMultipleSelection ? TRUE : FALSE);
  gtk_file_chooser_set_local_only(chooser, TRUE);
  gtk_dialog_set_default_response(dialog(), GTK_RESPONSE_ACCEPT);
  if (!panel.choosesDirectories) addFilters(panel);
  present();
}

void GtkOpenPanel::addFilters(const OpenPanel& panel) {
  GtkFileChooser* const chooser = GTK_FILE_CHOOSER(widget());
  GtkFileFilter* const wanted = namedFilter("Supported Files");
  std::size_t count = 0;
  for (const std::string& type : panel.mimeTypes) {
    if (count == kMostTypes) break;
    if (!isMimeType(type)) continue;
    gtk_file_filter_add_mime_type(wanted, type.c_str());
    ++count;
  }
  if (count == 0) {
    g_object_unref(g_object_ref_sink(wanted));
    return;
  }
  GtkFileFilter* const all = namedFilter("All Files");
  gtk_file_filter_add_pattern(all, "*");
  gtk_file_chooser_add_filter(chooser, wanted);
  gtk_file_chooser_add_filter(chooser, all);
  gtk_file_chooser_set_filter(chooser, wanted);
}

std::vector<std::filesystem::path> GtkOpenPanel::selection() const {
  std::vector<std::filesystem::path> files;
  GSList* const names = gtk_file_chooser_get_filenames(GTK_FILE_CHOOSER(widget()));
  for (GSList* name = names; name != nullptr; name = name->next) {
    files.emplace_back(static_cast<const char*>(name->data));
  }
  g_slist_free_full(names, g_free);
  return files;
}

void GtkOpenPanel::responded(int response) {
  if (response != GTK_RESPONSE_ACCEPT) return dismiss();
  auto files = selection();
  if (files.empty()) return dismiss();
  answer(std::move(files));
}

void GtkOpenPanel::answer(std::optional<std::vector<std::filesystem::path>> files) {
  const OpenPanelCompletion answered = std::exchange(answered_, nullptr);
  if (!answered) return;
  hide();
  answered(std::move(files));
}

}  // namespace velto
