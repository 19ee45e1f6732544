#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "layouts/Layout.h"
#include "layouts/LayoutDisplaySnapshot.h"

namespace velto {

/// Where the windows of a layout go on the displays that are connected now. Pure arithmetic: the numbers of a
/// layout are finite, but may be of any size and sign.
struct LayoutRestorePlan {
  struct Entry {
    /// As it was saved.
    LayoutWindow window;
    LayoutDisplaySnapshot display;
    /// Relative to the upper left corner of the display's visible frame, y downwards.
    LayoutRect rect;
    /// The saved display has no counterpart now.
    bool relocated = false;
    /// `rect` is not the saved one.
    bool adjusted = false;
    bool operator==(const Entry&) const = default;
  };
  using Displays = std::vector<LayoutDisplaySnapshot>;
  /// From the key of a saved display to the one that stands in for it.
  using DisplayMap = std::map<std::string, LayoutDisplaySnapshot, std::less<>>;

  /// One for each window of the layout, in its order; none without displays.
  std::vector<Entry> entries;
  bool operator==(const LayoutRestorePlan&) const = default;

  /// `copies` sets of these windows are open already: each moves the new one further right and down.
  static LayoutRestorePlan plan(const Layout& layout, const Displays& displays, std::size_t copies = 0);

  /// By key; then the main display; the rest from left to right. Several may share one display; one that is
  /// left over has none.
  static DisplayMap displayMap(const std::vector<LayoutDisplay>& saved, const Displays& current);

  /// The least size a window may have, unless its display is smaller.
  static Size minimumSize(const LayoutWindow& window);

  [[nodiscard]] std::size_t relocatedCount() const;
  /// Some window is not where it was saved.
  [[nodiscard]] bool isApproximated() const;

  /// What the person is told about a plan that differs from the layout; absent when it does not.
  [[nodiscard]] std::optional<std::string> approximationNotice(const Layout& layout,
                                                               bool suggestSaving) const;
};

}  // namespace velto
