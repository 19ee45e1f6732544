#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/windows/Toasts.h"
#include "app/windows/WindowOpening.h"
#include "layouts/LayoutRestorePlan.h"
#include "layouts/LayoutSaveSheet.h"
#include "layouts/LayoutStore.h"
#include "platform/Platform.h"

namespace velto {

/// Opens stored layouts as windows and stores the open windows as layouts.
///
/// It holds no layout in memory. The one thing it remembers is the current layout, the one opened or saved
/// last, as a preference; it changes only after a save has succeeded, and may name a layout that is gone. The
/// pictures of a layout's pages follow each save. Main thread only.
class LayoutManager : public Weakable {
 public:
  using Entries = std::vector<LayoutRestorePlan::Entry>;

  LayoutManager(const Platform& platform, LayoutStore& store, LayoutSaveSheet& saveSheet, Toasts& toasts);

  [[nodiscard]] LayoutStore& store() const { return store_; }
  /// Without an opener nothing opens.
  void setOpener(WeakPtr<LayoutWindowOpening> opener) { opener_ = opener; }

  [[nodiscard]] std::optional<std::string> currentLayoutID() const;
  /// An empty one stands for none.
  void setCurrentLayoutID(std::string_view id);
  [[nodiscard]] std::optional<Layout> currentLayout() const;

  /// @name Opening
  /// @{
  /// A further set of windows when the layout is open already, a step right and down unless it is to be
  /// `exact`. Tells the person afterwards what could not be as it was saved.
  void open(const Layout& layout, bool exact);
  /// Always a step away from where it was saved. The current layout stays as it is.
  void openCopy(const Layout& layout);
  /// The first entry ends up in front. Entries without a usable address are left out.
  void openEntries(const Entries& entries);
  /// How many windows show the page of the layout's first window.
  [[nodiscard]] std::size_t copiesOpen(const Layout& layout) const;
  /// @}

  /// @name Saving
  /// These throw `LayoutError` and what `LayoutStore::save` throws; then nothing has changed.
  /// @{
  /// The open windows as a new layout.
  Layout save(const std::string& name, WallTime date);
  /// The open windows in place of those of a stored layout.
  Layout update(const Layout& layout, WallTime date);
  /// Leaves the time of the last update as it is.
  void rename(Layout layout, std::string_view name);
  /// @}

  /// @name Commands of the person
  /// Whatever goes wrong is told in an alert. A layout that is gone is ignored.
  /// @{
  void openLayoutFromMenu(std::string_view id);
  /// Asks for a name.
  void saveLayout();
  /// Over the current layout.
  void saveLayoutOverride();
  void updateLayoutFromMenu(std::string_view id);
  /// @}

 private:
  void showApproximation(const Layout& layout, const std::string& notice);
  [[nodiscard]] Layout newLayout(const std::string& name, const std::vector<WindowSnapshot>& windows,
                                 WallTime date) const;
  void store(const Layout& layout);
  void saveAsked(const LayoutSaveSheet::Result& asked);
  void showSaved(const Layout& layout) { toasts_.show("Saved “" + layout.name + "”"); }

  Platform platform_;
  LayoutStore& store_;
  LayoutSaveSheet& saveSheet_;
  Toasts& toasts_;
  WeakPtr<LayoutWindowOpening> opener_;
};

}  // namespace velto
