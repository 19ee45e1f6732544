#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velto {

/// What a reader takes for single characters (extended grapheme clusters, so CR LF is one), in order, as
/// views into the text. Ill-formed UTF-8 counts as U+FFFD.
std::vector<std::string_view> characters(std::string_view text);

/// Whether the first code point of a character has a numeric value: digits of any script, fractions, Roman
/// numerals, Chinese numbers.
bool isNumber(std::string_view character);

/// Lower case by full case folding ("ß" gives "ss"), and without the marks on Latin, Greek and Cyrillic
/// letters. Marks of other scripts stay, as they belong to the letter there. Letters with a stroke stay what
/// they are.
std::string foldCaseAndMarks(std::string_view text);

}  // namespace velto
