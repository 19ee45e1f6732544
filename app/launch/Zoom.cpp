#include "app/launch/Zoom.h"

#include <algorithm>

#include "platform/foundation/Text.h"

namespace velto {
namespace {

bool isPlainDecimal(std::string_view text) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  const bool known = std::all_of(text.begin(), text.end(), [&](char c) { return c == '.' || isDigit(c); });
  return known && std::any_of(text.begin(), text.end(), isDigit) &&
         std::count(text.begin(), text.end(), '.') <= 1;
}

}  // namespace

double clampZoom(double zoom) {
  if (!(zoom > kMinimumZoom)) return kMinimumZoom;
  return std::min(zoom, kMaximumZoom);
}

std::optional<double> parseZoomValue(std::optional<std::string_view> text) {
  if (!text) return std::nullopt;
  std::string_view number = trimWhitespace(*text);
  const bool isPercentage = number.ends_with('%');
  if (isPercentage) number = trimWhitespace(number.substr(0, number.size() - 1));
  if (!isPlainDecimal(number)) return std::nullopt;

  const auto value = parseDouble(number);
  if (!value || !(*value > 0)) return std::nullopt;
  return clampZoom(isPercentage || *value > kMaximumZoom ? *value / 100 : *value);
}

}  // namespace velto
