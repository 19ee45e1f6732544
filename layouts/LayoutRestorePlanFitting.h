#pragma once

#include <vector>

#include "layouts/LayoutRestorePlan.h"

namespace velto {

/// Of the visible frame.
LayoutSize visibleSize(const LayoutDisplaySnapshot& display);

/// The rectangle of a window on a display of size `target` when its own was of size `saved`: scaled by one
/// factor so that everything still fits, held to the edges and centres it was held to, in whole points.
/// Displays of one size, or without one, scale nothing.
LayoutRect fittedRect(const LayoutWindow& window, LayoutSize saved, LayoutSize target, Size minimum);

/// Brought inside a display of this size; as it is when the display has none.
LayoutRect clampedRect(LayoutRect rect, LayoutSize target, Size minimum);

/// Moves windows that touched when they were saved back together after each was rounded on its own, first
/// along x, then along y. Each follows the nearest of those that stood before it.
void closeGaps(std::vector<LayoutRestorePlan::Entry>& entries);

}  // namespace velto
