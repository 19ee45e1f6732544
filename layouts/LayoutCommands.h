#pragma once

#include <optional>

#include "layouts/LayoutManager.h"
#include "layouts/LayoutURLCommand.h"
#include "layouts/Layouts.h"
#include "layouts/LayoutsWindow.h"

namespace velto {

/// Carries out what `velto://layout?…` URLs ask for. A URL gets no answer, so failures are alerts.
class LayoutCommands : public Layouts {
 public:
  LayoutCommands(const Platform& platform, LayoutManager& manager, LayoutsWindow& window)
      : platform_(platform), manager_(manager), window_(window) {}

  void setOpener(LayoutWindowOpening& opener) override { manager_.setOpener(opener); }
  void prepareStore() override;
  void handleCommand(const Url& url) override;

 private:
  void execute(const OpenLayout& command);
  void execute(const SaveLayout& command);
  void execute(const RenameLayout& command);
  void execute(const ShowLayouts&) { window_.showLayouts(); }
  /// Nothing when there is no such layout; the person has been told then.
  [[nodiscard]] std::optional<Layout> resolve(const LayoutAddress& address);

  Platform platform_;
  LayoutManager& manager_;
  LayoutsWindow& window_;
};

}  // namespace velto
