#pragma once

namespace velto {

/// How far a page is scrolled, in CSS pixels from its top left corner.
struct LayoutScroll {
  double x = 0;
  double y = 0;
  bool operator==(const LayoutScroll&) const = default;
};

}  // namespace velto
