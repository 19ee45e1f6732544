#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace velto {

/// Who a display says it is.
struct Edid {
  /// The 16 bits of the manufacturer id.
  std::uint32_t vendor = 0;
  std::uint32_t product = 0;
  std::uint32_t serial = 0;
  /// The product's name, or empty when the display does not tell one.
  std::string name;
};

/// Reads the first block of a display's EDID. Absent when the bytes are none.
std::optional<Edid> parseEdid(std::span<const std::uint8_t> bytes);

}  // namespace velto
