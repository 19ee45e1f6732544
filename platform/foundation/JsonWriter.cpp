#include "platform/foundation/JsonWriter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "platform/foundation/JsonError.h"
#include "platform/foundation/Text.h"

namespace velto {
namespace {

/// What stands for a character that cannot stand for itself.
std::string escape(char c) {
  switch (c) {
    case '"':
      return "\\\"";
    case '\\':
      return "\\\\";
    case '\b':
      return "\\b";
    case '\f':
      return "\\f";
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      break;
  }
  std::array<char, 8> code{};
  std::snprintf(code.data(), code.size(), "\\u%04x", static_cast<unsigned>(c));
  return code.data();
}

}  // namespace

void appendJsonString(std::string& out, std::string_view text) {
  if (!isValidUtf8(text)) return appendJsonString(out, repairUtf8(text));
  const auto needsEscape = [](char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\';
  };
  out += '"';
  for (;;) {
    const auto special = std::find_if(text.begin(), text.end(), needsEscape);
    out.append(text.begin(), special);
    if (special == text.end()) break;
    out += escape(*special);
    text.remove_prefix(static_cast<std::size_t>(special - text.begin()) + 1);
  }
  out += '"';
}

void JsonWriter::key(std::string_view name) {
  separate();
  appendJsonString(text_, name);
  text_ += " : ";
  followsKey_ = true;
}

void JsonWriter::string(std::string_view text) {
  separate();
  appendJsonString(text_, text);
}

void JsonWriter::boolean(bool value) {
  separate();
  text_ += value ? "true" : "false";
}

void JsonWriter::integer(std::int64_t value) {
  separate();
  text_ += std::to_string(value);
}

void JsonWriter::number(double value) {
  constexpr double kLargestPositional = 9007199254740992;  // 2^53, up to which every whole number is exact
  constexpr double kSmallestPositional = 1e-4;
  if (!std::isfinite(value)) throw JsonError(JsonError::Kind::unwritable);
  separate();
  const double size = std::abs(value);
  const bool positional = size == 0 || (size >= kSmallestPositional && size <= kLargestPositional);
  std::array<char, 32> digits{};
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                    positional ? std::chars_format::fixed : std::chars_format::scientific);
  text_.append(digits.data(), result.ptr);
}

void JsonWriter::begin(char bracket) {
  separate();
  text_ += bracket;
  ++depth_;
  containerIsEmpty_ = true;
}

void JsonWriter::end(char bracket) {
  --depth_;
  if (containerIsEmpty_) text_ += '\n';
  newLine();
  text_ += bracket;
  containerIsEmpty_ = false;
}

void JsonWriter::separate() {
  if (!followsKey_ && depth_ > 0) {
    if (!containerIsEmpty_) text_ += ',';
    newLine();
  }
  followsKey_ = false;
  containerIsEmpty_ = false;
}

void JsonWriter::newLine() {
  text_ += '\n';
  text_.append(2 * depth_, ' ');
}

}  // namespace velto
