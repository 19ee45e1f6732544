#pragma once

#include <cairomm/context.h>

#include "platform/foundation/Geometry.h"

namespace velto {

/// Adds the outline of the rectangle to the path. The radius is at most half of the shorter side.
void roundedRectangle(const Cairo::RefPtr<Cairo::Context>& context, const Rect& rectangle, double radius);

}  // namespace velto
