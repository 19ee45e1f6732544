#include "platform/foundation/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <locale>
#include <sstream>
#include <system_error>

#include <simdjson.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace velto {
namespace {

// U+200B is trimmed although Unicode does not count it as a space, because people paste it at the ends of
// names.
constexpr std::array<std::string_view, 19> kBlanks = {
    "\t",     " ",      "\u00a0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005",
    "\u2006", "\u2007", "\u2008", "\u2009", "\u200a", "\u200b", "\u202f", "\u205f", "\u3000"};
constexpr std::array<std::string_view, 7> kLineEnds = {"\n",       "\v",     "\f",    "\r",
                                                       "\xc2\x85", "\u2028", "\u2029"};

struct Decoded {
  char32_t codePoint = 0;
  std::size_t length = 0;
  bool valid = false;
};

/// The first character of a text that is not empty, or the longest ill-formed run that can be replaced as
/// one.
Decoded decodeFirst(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) return {lead, 1, true};
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const auto available = static_cast<std::int32_t>(std::min<std::size_t>(text.size(), U8_MAX_LENGTH));
  std::int32_t used = 0;
  UChar32 codePoint = U_SENTINEL;
  U8_NEXT(bytes, used, available, codePoint);
  const bool valid = codePoint >= 0;
  return {valid ? static_cast<char32_t>(codePoint) : U'\ufffd', static_cast<std::size_t>(used), valid};
}

void appendUtf8(std::string& out, char32_t codePoint) {
  std::array<std::uint8_t, U8_MAX_LENGTH> bytes{};
  std::int32_t length = 0;
  U8_APPEND_UNSAFE(bytes.data(), length, static_cast<UChar32>(codePoint));
  out.append(reinterpret_cast<const char*>(bytes.data()), static_cast<std::size_t>(length));
}

/// Eight bytes at a time, since most texts are ASCII and all of them come by here.
bool isAscii(std::string_view text) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  std::uint64_t seen = 0;
  for (; text.size() >= sizeof seen; text.remove_prefix(sizeof seen)) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data(), sizeof word);
    seen |= word;
  }
  for (const char c : text) seen |= static_cast<unsigned char>(c);
  return (seen & kHighBits) == 0;
}

template <std::size_t count>
std::size_t lengthAtStart(std::string_view text, const std::array<std::string_view, count>& set) {
  const auto found =
      std::find_if(set.begin(), set.end(), [&](auto member) { return text.starts_with(member); });
  return found == set.end() ? 0 : found->size();
}

template <std::size_t count>
std::size_t lengthAtEnd(std::string_view text, const std::array<std::string_view, count>& set) {
  const auto found =
      std::find_if(set.begin(), set.end(), [&](auto member) { return text.ends_with(member); });
  return found == set.end() ? 0 : found->size();
}

std::string_view trim(std::string_view text, bool lineEndsToo) {
  const auto leading = [&] {
    const std::size_t blank = lengthAtStart(text, kBlanks);
    return blank != 0 || !lineEndsToo ? blank : lengthAtStart(text, kLineEnds);
  };
  const auto trailing = [&] {
    const std::size_t blank = lengthAtEnd(text, kBlanks);
    return blank != 0 || !lineEndsToo ? blank : lengthAtEnd(text, kLineEnds);
  };
  while (const std::size_t length = leading()) text.remove_prefix(length);
  while (const std::size_t length = trailing()) text.remove_suffix(length);
  return text;
}

std::size_t countDigits(std::string_view text) {
  return std::min(text.find_first_not_of("0123456789"), text.size());
}

bool isDecimalNumber(std::string_view text) {
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  const std::size_t whole = countDigits(text);
  text.remove_prefix(whole);
  std::size_t fraction = 0;
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    fraction = countDigits(text);
    text.remove_prefix(fraction);
  }
  if (whole + fraction == 0) return false;
  if (text.empty()) return true;
  if (text.front() != 'e' && text.front() != 'E') return false;
  text.remove_prefix(1);
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  return !text.empty() && countDigits(text) == text.size();
}

/// Infinity or zero: `std::from_chars` does not tell which of them a number out of range is nearest to.
double nearestToOutOfRange(std::string_view text) {
  std::istringstream stream{std::string(text)};
  stream.imbue(std::locale::classic());
  double value = 0;
  stream >> value;
  return stream.fail() ? std::copysign(std::numeric_limits<double>::infinity(), value) : value;
}

}  // namespace

std::string_view trimWhitespace(std::string_view text) { return trim(text, false); }

std::string_view trimWhitespaceAndNewlines(std::string_view text) { return trim(text, true); }

std::string lowercased(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const Decoded first = decodeFirst(text);
    text.remove_prefix(first.length);
    if (first.codePoint < 0x80) {
      const bool upper = first.codePoint >= U'A' && first.codePoint <= U'Z';
      out += static_cast<char>(first.codePoint + (upper ? 0x20U : 0U));
    } else if (first.codePoint == U'\u0130') {
      out += "i\u0307";  // the only character whose lower case is two, whatever stands around it
    } else {
      appendUtf8(out, static_cast<char32_t>(u_tolower(static_cast<UChar32>(first.codePoint))));
    }
  }
  return out;
}

std::optional<std::int64_t> parseInteger(std::string_view text) {
  std::string_view digits = text;
  if (digits.starts_with('+') || digits.starts_with('-')) digits.remove_prefix(1);
  if (digits.empty() || countDigits(digits) != digits.size()) return std::nullopt;
  if (text.front() == '+') text.remove_prefix(1);
  std::int64_t value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc()) return std::nullopt;
  return value;
}

std::optional<double> parseDouble(std::string_view text) {
  if (!isDecimalNumber(text)) return std::nullopt;
  if (text.front() == '+') text.remove_prefix(1);
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc::result_out_of_range) return nearestToOutOfRange(text);
  if (result.ec != std::errc()) return std::nullopt;
  return value;
}

std::vector<std::string_view> splitOmittingEmpty(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  while (!text.empty()) {
    const std::size_t length = std::min(text.find(separator), text.size());
    if (length != 0) pieces.push_back(text.substr(0, length));
    text.remove_prefix(std::min(length + 1, text.size()));
  }
  return pieces;
}

bool isValidUtf8(std::string_view bytes) { return simdjson::validate_utf8(bytes.data(), bytes.size()); }

std::string repairUtf8(std::string_view bytes) {
  if (isAscii(bytes)) return std::string(bytes);
  std::string out;
  out.reserve(bytes.size());
  while (!bytes.empty()) {
    const Decoded first = decodeFirst(bytes);
    if (first.valid) {
      out.append(bytes.substr(0, first.length));
    } else {
      appendUtf8(out, first.codePoint);
    }
    bytes.remove_prefix(first.length);
  }
  return out;
}

std::string escapeHtml(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

}  // namespace velto
