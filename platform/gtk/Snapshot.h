#pragma once

#include <optional>
#include <string>

#include <cairo.h>

namespace velto {

/// The picture scaled to `width` pixels, as a PNG. Absent when it is empty, when the width is not from 1 to
/// 16384, or when memory runs out.
std::optional<std::string> pngOf(cairo_surface_t* picture, double width);

}  // namespace velto
