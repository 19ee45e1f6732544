#pragma once

#include <optional>
#include <string_view>

namespace velto {

/// Page zoom is a multiplier: 1.0 is 100%.
inline constexpr double kMinimumZoom = 0.25;
inline constexpr double kMaximumZoom = 3.0;

/// The nearest zoom that a page may have; not-a-number gives the minimum.
double clampZoom(double zoom);

/// Reads "150%", "150" or "1.5" (all 1.5): a number above 3 counts as a percentage even without its sign. The
/// result is clamped. Absent input, zero and anything that is not a plain decimal number are absent, which
/// leaves the page at 100%.
std::optional<double> parseZoomValue(std::optional<std::string_view> text);

}  // namespace velto
