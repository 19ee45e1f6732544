#pragma once

#include <string>

namespace velto {

/// A new random identifier, upper case with hyphens: "4E6D1B2C-8F10-4A55-9C3E-6A1B7D20F311". Any thread.
std::string makeUuid();

}  // namespace velto
