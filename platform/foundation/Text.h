#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velto {

/// Removes blanks from both ends: tab and the Unicode space separators (U+0020, U+00A0, U+1680, U+2000 to
/// U+200B, U+202F, U+205F, U+3000), but no line ends. Works on UTF-8.
std::string_view trimWhitespace(std::string_view text);

/// The same, and line ends too (U+000A to U+000D, U+0085, U+2028, U+2029).
std::string_view trimWhitespaceAndNewlines(std::string_view text);

/// Full Unicode lower case without a locale; invalid UTF-8 is repaired on the way.
std::string lowercased(std::string_view text);

/// An optional single "+" or "-", then ASCII digits only, the whole text, within 64 bits.
std::optional<std::int64_t> parseInteger(std::string_view text);

/// Digits with at most one ".", an optional sign and exponent; the whole text. "inf" and "nan" are not
/// numbers here.
std::optional<double> parseDouble(std::string_view text);

/// The pieces between separators; empty ones are dropped.
std::vector<std::string_view> splitOmittingEmpty(std::string_view text, char separator);

bool isValidUtf8(std::string_view bytes);

/// The text with every maximal ill-formed run replaced by one U+FFFD.
std::string repairUtf8(std::string_view bytes);

/// "&", "<", ">" and the double quote as entities, the ampersand first.
std::string escapeHtml(std::string_view text);

}  // namespace velto
