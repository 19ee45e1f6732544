#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "layouts/Layout.h"

namespace velto {

/// The short word that a name alone gives: its letters and digits after folding case and accents, in ASCII,
/// with one hyphen for whatever stands between them; at most 60 of them. May be empty, reserved or somebody
/// else's.
std::string layoutSlug(std::string_view name);

/// For each layout, in their order, the word that opens it. The words differ from each other, are never
/// empty, reserved or port-like, and hold for this very list only: another layout may change them.
std::vector<std::string> slugsOf(const std::vector<Layout>& layouts);

/// The same words by the ids of the layouts; of several with one id, the first.
std::map<std::string, std::string> slugTable(const std::vector<Layout>& layouts);

/// Why the layout of this name answers to another word than the one its name gives; absent when it does not.
std::optional<std::string> slugExplanation(std::string_view name, std::string_view slug);

/// Whether the `velto` command means something else by this word.
bool isReserved(std::string_view word);

/// Nothing but numbers, in any script; so is the empty word.
bool isPortLike(std::string_view word);

}  // namespace velto
