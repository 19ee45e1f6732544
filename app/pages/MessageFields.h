#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Json.h"

namespace velto {

/// The fields of a message that a page sent. Each is absent when the body is no dictionary, has no such key
/// or has a value of another type there: a number is no boolean and a boolean is no number.

/// Finite.
std::optional<double> numberField(const JsonValue& body, std::string_view key);
std::optional<bool> booleanField(const JsonValue& body, std::string_view key);
std::optional<std::string> textField(const JsonValue& body, std::string_view key);

}  // namespace velto
