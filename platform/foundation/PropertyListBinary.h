#pragma once

#include <optional>
#include <string_view>

#include "platform/foundation/PropertyList.h"

namespace velto {

/// Reads the binary form ("bplist00"). Absent when it is anything else.
std::optional<PropertyList> readBinaryPropertyList(std::string_view bytes);

}  // namespace velto
