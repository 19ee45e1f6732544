#include <exception>

#include "layouts/LayoutAlert.h"
#include "layouts/LayoutManager.h"
#include "layouts/OpenWindowCapture.h"

/// What the person asks the manager for, with its questions and answers.

namespace velto {

void LayoutManager::openLayoutFromMenu(std::string_view id) {
  if (const auto layout = store_.layoutWithId(id)) open(*layout, false);
}

void LayoutManager::saveLayout() {
  const Application& application = platform_.application;
  if (openPanels(application).empty()) {
    showLayoutAlert(platform_.application, "No windows to save", "Open a Velto window first, then save.");
    return;
  }
  auto windows = snapshots(application, currentDisplays(application));
  if (windows.empty()) {
    showLayoutAlert(platform_.application, "No pages to save",
                    "The open windows have not loaded a page yet.");
    return;
  }
  LayoutSaveSheet::Request request{.snapshots = std::move(windows), .existingNames = {}, .prefillName = {}};
  const auto currentID = currentLayoutID();
  for (const Layout& layout : store_.loadAll().layouts) {
    if (layout.id == currentID && !request.prefillName) request.prefillName = layout.name;
    request.existingNames.push_back(layout.name);
  }
  request.requiresUniqueName = true;
  saveSheet_.show(
      request, application.keyWindow(),
      [self = WeakPtr<LayoutManager>(*this)](const std::optional<LayoutSaveSheet::Result>& asked) {
        if (self && asked) self->saveAsked(*asked);
      });
}

void LayoutManager::saveAsked(const LayoutSaveSheet::Result& asked) {
  try {
    const Layout layout = newLayout(asked.name, asked.windows, platform_.clock.now());
    store(layout);
    showSaved(layout);
  } catch (const std::exception& error) {
    showLayoutAlert(platform_.application, "Could not save the layout", error.what());
  }
}

void LayoutManager::saveLayoutOverride() {
  const auto current = currentLayout();
  if (!current) {
    showLayoutAlert(platform_.application, "No layout to override",
                    "Open or save a layout first, or use Save as New Layout…");
    return;
  }
  try {
    showSaved(update(*current, platform_.clock.now()));
  } catch (const std::exception& error) {
    showLayoutAlert(platform_.application, "Could not save the layout", error.what());
  }
}

void LayoutManager::updateLayoutFromMenu(std::string_view id) {
  const auto layout = store_.layoutWithId(id);
  if (!layout) return;
  try {
    update(*layout, platform_.clock.now());
  } catch (const std::exception& error) {
    showLayoutAlert(platform_.application, "Could not update the layout", error.what());
  }
}

void LayoutManager::showApproximation(const Layout& layout, const std::string& notice) {
  enum Button : std::size_t { kOk, kOverride, kSaveAsNew };
  Alert alert;
  alert.messageText = "“" + layout.name + "” was approximated";
  alert.informativeText = notice;
  alert.buttons = {"OK", "Save Layout (Override)", "Save as New Layout…"};
  alert.dismissButton = kOk;
  platform_.application.showAlert(
      alert, nullptr, [self = WeakPtr<LayoutManager>(*this), id = layout.id](const AlertAnswer& answer) {
        if (!self) return;
        if (answer.button == kOverride) self->updateLayoutFromMenu(id);
        if (answer.button == kSaveAsNew) self->saveLayout();
      });
}

}  // namespace velto
