#pragma once

#include <cstdint>
#include <optional>

#include "platform/foundation/Geometry.h"

namespace velto {

/// Where a window of this size goes when it was asked for `x` points from the left and `y` points down from
/// the top of the visible area; a missing one counts as 0. It is held inside the area; one larger than the
/// area sits against its left and bottom edges. All in global screen coordinates.
Point requestedOrigin(const Rect& visibleArea, Size window, std::optional<std::int64_t> x,
                      std::optional<std::int64_t> y);

/// A step to the right and down from the window that it came from, held inside the visible area; one larger
/// than the area has its upper right corner there. In global screen coordinates.
Point cascadedOrigin(const Rect& reference, const Rect& visibleArea, Size window);

}  // namespace velto
