#include "platform/foundation/Uuid.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <random>

namespace velto {

std::string makeUuid() {
  // Kept, since opening it takes longer than all the rest.
  thread_local std::random_device random;
  std::array<std::uint32_t, 4> bits{random(), random(), random(), random()};
  bits[1] = (bits[1] & 0xffff0fffU) | 0x00004000U;  // version 4: random
  bits[2] = (bits[2] & 0x3fffffffU) | 0x80000000U;  // the variant of RFC 4122
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%08X-%04X-%04X-%04X-%04X%08X", bits[0], bits[1] >> 16U,
                bits[1] & 0xffffU, bits[2] >> 16U, bits[2] & 0xffffU, bits[3]);
  return text.data();
}

}  // namespace velto
