#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/PropertyList.h"

namespace velto {

/// Reads the XML form, with or without its `<plist>` element. Absent when it is anything else.
std::optional<PropertyList> readXmlPropertyList(std::string_view bytes);

/// Writes the XML form.
std::string writeXmlPropertyList(const PropertyList& value);

}  // namespace velto
