#include "platform/gtk/Edid.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace velto {

namespace {

constexpr std::size_t kBlockSize = 128;
constexpr std::array<std::uint8_t, 8> kHeader = {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};
constexpr std::array<std::size_t, 4> kDescriptors = {54, 72, 90, 108};
constexpr std::array<std::uint8_t, 5> kNameDescriptor = {0x00, 0x00, 0x00, 0xFC, 0x00};
constexpr std::size_t kNameLength = 13;

/// Up to the line feed that ends it; what is not printable ASCII is left out, and so are the spaces at the
/// end.
std::string nameIn(std::span<const std::uint8_t> text) {
  std::string name;
  for (const std::uint8_t byte : text) {
    if (byte == '\n' || byte == 0) break;
    if (byte >= ' ' && byte <= '~') name.push_back(static_cast<char>(byte));
  }
  name.erase(name.find_last_not_of(' ') + 1);
  return name;
}

}  // namespace

std::optional<Edid> parseEdid(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < kBlockSize || !std::equal(kHeader.begin(), kHeader.end(), bytes.begin()))
    return std::nullopt;
  const auto byte = [&](std::size_t at) { return std::uint32_t{bytes[at]}; };
  Edid edid;
  edid.vendor = byte(8) << 8U | byte(9);
  edid.product = byte(10) | byte(11) << 8U;
  edid.serial = byte(12) | byte(13) << 8U | byte(14) << 16U | byte(15) << 24U;
  for (const std::size_t at : kDescriptors) {
    const auto descriptor = bytes.subspan(at);
    if (!std::equal(kNameDescriptor.begin(), kNameDescriptor.end(), descriptor.begin())) continue;
    edid.name = nameIn(descriptor.subspan(kNameDescriptor.size(), kNameLength));
    break;
  }
  return edid;
}

}  // namespace velto
