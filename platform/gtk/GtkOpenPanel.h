#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include <gtk/gtk.h>

#include "platform/gtk/GtkSheet.h"
#include "platform/ui/OpenPanel.h"

namespace velto {

/// A question for files on the screen, in GTK's own dialog.
class GtkOpenPanel final : public GtkSheet {
 public:
  /// `answered` is called once, from within the dialog's own signal; never by the destructor.
  GtkOpenPanel(const OpenPanel& panel, const Place& place, OpenPanelCompletion answered);

  void dismiss() override { answer(std::nullopt); }
  /// Chooses these as the person does.
  void choose(const std::vector<std::filesystem::path>& files) { answer(files); }

 private:
  void responded(int response) override;
  void addFilters(const OpenPanel& panel);
  [[nodiscard]] std::vector<std::filesystem::path> selection() const;
  void answer(std::optional<std::vector<std::filesystem::path>> files);

  OpenPanelCompletion answered_;
};

}  // namespace velto
