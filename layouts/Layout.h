#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/windows/LayoutScroll.h"
#include "platform/foundation/Date.h"

namespace velto {

/// A rectangle relative to the upper left corner of a display's visible frame, in points, y downwards.
struct LayoutRect {
  double x = 0;
  double y = 0;
  double w = 0;
  double h = 0;
  bool operator==(const LayoutRect&) const = default;
};

/// A rectangle in fractions of a visible frame's width and height.
struct LayoutNormalizedRect {
  double x = 0;
  double y = 0;
  double w = 0;
  double h = 0;
  bool operator==(const LayoutNormalizedRect&) const = default;
};

struct LayoutSize {
  double w = 0;
  double h = 0;
  bool operator==(const LayoutSize&) const = default;
};

/// Which edges and centres of the visible frame a window sat against.
struct LayoutAnchors {
  bool left = false;
  bool right = false;
  bool top = false;
  bool bottom = false;
  bool centerX = false;
  bool centerY = false;
  bool operator==(const LayoutAnchors&) const = default;
};

/// A display as it stood when the layout was captured.
struct LayoutDisplay {
  std::string key;
  std::string name;
  /// Of the whole display.
  LayoutSize frame;
  /// Without panels and docks, in global screen coordinates (y upwards), as `Screen` tells it.
  LayoutRect visibleFrame;
  /// Device pixels per point.
  double backingScaleFactor = 1;
  bool isMain = false;
  bool operator==(const LayoutDisplay&) const = default;
};

/// One window of a layout or session.
struct LayoutWindow {
  std::string id;
  std::string url;
  std::string title;
  /// The `LayoutDisplay` it stood on; may name none.
  std::string displayKey;
  LayoutRect rect;
  LayoutNormalizedRect normalized;
  LayoutAnchors anchors;
  double zoom = 1;
  /// The control bar was collapsed.
  bool chromeless = false;
  bool pinned = false;
  /// Of the picture, relative to the layouts' folder.
  std::optional<std::string> thumbnail;
  std::optional<LayoutScroll> scroll;
  /// Absent or true when it comes from a capture.
  std::optional<bool> noFocus;
  WallTime capturedAt;
  bool operator==(const LayoutWindow&) const = default;
};

/// A named arrangement of windows. Dates are whole seconds once they were on disk.
struct Layout {
  static constexpr std::int64_t kSchemaVersion = 1;

  std::int64_t schemaVersion = kSchemaVersion;
  /// Names the file too.
  std::string id;
  std::string name;
  WallTime createdAt;
  WallTime updatedAt;
  /// The main one first.
  std::vector<LayoutDisplay> displays;
  std::vector<LayoutWindow> windows;
  bool operator==(const Layout&) const = default;

  /// The saved display that a window stood on, else the main one, else the first; null when there is none.
  [[nodiscard]] const LayoutDisplay* displayOf(const LayoutWindow& window) const;
};

}  // namespace velto
