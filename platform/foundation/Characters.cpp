#include "platform/foundation/Characters.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <stdexcept>

#include <unicode/normalizer2.h>
#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

namespace velto {
namespace {

/// Where the scripts end whose marks are accents on a letter: Latin, Greek and Cyrillic stand below it.
constexpr UChar32 kFirstLetterWithOwnMarks = 0x510;

using BreakIterator = std::unique_ptr<UBreakIterator, decltype(&ubrk_close)>;
using TextAccess = std::unique_ptr<UText, decltype(&utext_close)>;

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

void require(UErrorCode status) {
  if (U_FAILURE(status) != 0) throw std::runtime_error(u_errorName(status));
}

UChar32 firstCodePoint(std::string_view text) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  std::int32_t offset = 0;
  UChar32 codePoint = U_SENTINEL;
  U8_NEXT_OR_FFFD(bytes, offset, static_cast<std::int32_t>(text.size()), codePoint);
  return codePoint;
}

std::vector<std::string_view> asciiCharacters(std::string_view text) {
  std::vector<std::string_view> found;
  found.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = text.substr(at).starts_with("\r\n") ? 2 : 1;
    found.push_back(text.substr(at, length));
    at += length;
  }
  return found;
}

/// The letter below the marks of a composed one, or the code point itself.
UChar32 bareLetter(const icu::Normalizer2& decomposing, UChar32 codePoint) {
  icu::UnicodeString parts;
  return decomposing.getDecomposition(codePoint, parts) != 0 ? parts.char32At(0) : codePoint;
}

}  // namespace

std::vector<std::string_view> characters(std::string_view text) {
  if (isAscii(text)) return asciiCharacters(text);
  UErrorCode status = U_ZERO_ERROR;
  const TextAccess access(
      utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status), utext_close);
  const BreakIterator breaks(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status), ubrk_close);
  require(status);
  ubrk_setUText(breaks.get(), access.get(), &status);
  require(status);

  std::vector<std::string_view> found;
  std::int32_t start = 0;
  for (std::int32_t end = ubrk_next(breaks.get()); end != UBRK_DONE; end = ubrk_next(breaks.get())) {
    found.push_back(text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)));
    start = end;
  }
  return found;
}

bool isNumber(std::string_view character) {
  return !character.empty() &&
         u_getIntPropertyValue(firstCodePoint(character), UCHAR_NUMERIC_TYPE) != U_NT_NONE;
}

std::string foldCaseAndMarks(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* decomposing = icu::Normalizer2::getNFDInstance(status);
  require(status);

  const auto source =
      icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
  icu::UnicodeString folded;
  bool dropsMarks = false;
  for (std::int32_t at = 0; at < source.length(); at = source.moveIndex32(at, 1)) {
    const UChar32 codePoint = source.char32At(at);
    if (at > 0 && u_hasBinaryProperty(codePoint, UCHAR_GRAPHEME_EXTEND) != 0) {
      if (!dropsMarks) folded.append(codePoint);
      continue;
    }
    const UChar32 letter = bareLetter(*decomposing, codePoint);
    dropsMarks = letter < kFirstLetterWithOwnMarks;
    folded.append(icu::UnicodeString(dropsMarks ? letter : codePoint).foldCase());
  }
  std::string out;
  return folded.toUTF8String(out);
}

}  // namespace velto
