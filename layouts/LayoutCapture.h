#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "layouts/Layout.h"
#include "layouts/LayoutDisplaySnapshot.h"

namespace velto {

/// What the hardware says about a display; 0 where it says nothing.
struct DisplayIdentity {
  std::uint32_t vendor = 0;
  std::uint32_t model = 0;
  std::uint32_t serial = 0;
  bool operator==(const DisplayIdentity&) const = default;
};

/// One window as it is now. The frame is in global screen coordinates, y upwards.
struct WindowSnapshot {
  /// Fresh for every snapshot.
  std::string id;
  std::string url;
  std::string title;
  Rect frame;
  LayoutDisplaySnapshot display;
  double zoom = 1;
  bool chromeless = false;
  bool pinned = false;
  std::optional<LayoutScroll> scroll;
  bool noFocus = false;
  bool operator==(const WindowSnapshot&) const = default;
};

/// "1552:41231:0:1512x982", or "name:Display A:1920x1080" for a display that says nothing about itself. The
/// size (of the whole display) belongs to it: the same display at another resolution is another one to
/// layouts.
std::string displayKey(const DisplayIdentity& identity, std::string_view name, Size size);

/// Sorts displays, the main one first and then from left to right, and tells those with one key apart by
/// "#1",
/// "#2" and so on, from left to right.
std::vector<LayoutDisplaySnapshot> numberedDisplays(std::vector<LayoutDisplaySnapshot> displays);

/// The display with this key (of the screen a window is on, without a number), else the main one, else the
/// first; null when there are none. So a window on one of two equal displays belongs to the main one.
const LayoutDisplaySnapshot* displayWithKey(const std::vector<LayoutDisplaySnapshot>& displays,
                                            const std::optional<std::string>& key);

/// What a rectangle touches within a visible frame of this size, or is centred in, to within 8 points.
LayoutAnchors anchorsOf(const LayoutRect& rect, LayoutSize visible);

LayoutWindow layoutWindow(const WindowSnapshot& snapshot, WallTime capturedAt);
LayoutDisplay layoutDisplay(const LayoutDisplaySnapshot& snapshot);

/// The layout with these windows and displays in place of its own. A page that it had before keeps the
/// identity and the picture of its window; of several windows with one page, the first of each takes part.
Layout updated(Layout layout, const std::vector<WindowSnapshot>& snapshots,
               const std::vector<LayoutDisplaySnapshot>& displays, WallTime date);

/// Those that show a file of this computer.
std::vector<WindowSnapshot> localFileSnapshots(const std::vector<WindowSnapshot>& snapshots);

}  // namespace velto
