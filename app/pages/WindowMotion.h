#pragma once

#include <vector>

#include "platform/foundation/Geometry.h"
#include "platform/ui/Screen.h"

namespace velto {

/// Where a page moves or sizes a window to. What a page asks for may be absurd; no result is. Frames are in
/// global screen coordinates, whatever the page's own way of counting.

/// At least this much of a window, on each axis, stays where the person can reach it.
constexpr double kLeastShown = 22;

/// The frame moved by so many points to the right and down.
Rect draggedFrame(const Rect& frame, double deltaX, double deltaY);

/// The frame with this size, no smaller than the least one, and the top left corner where it was.
Rect resizedFrame(const Rect& frame, Size size, Size leastSize);

/// The frame, moved by no more than is needed for a part of it to show on one of the screens. Without screens
/// it stays as it is.
Rect heldOnScreens(const Rect& frame, const std::vector<Screen>& screens);

}  // namespace velto
