#include "layouts/LayoutFormat.h"

#include <algorithm>

namespace velto {
namespace {

/// The one member that is read before all others.
struct SchemaProbe {
  std::int64_t schemaVersion = 0;
};

constexpr std::array<bool, 256> kSafeCharacters = [] {
  std::array<bool, 256> safe{};
  for (const char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-")) {
    safe[static_cast<unsigned char>(c)] = true;
  }
  return safe;
}();

bool isSafeThumbnail(std::string_view path) {
  constexpr std::string_view kFolder = "thumbs/";
  constexpr std::string_view kExtension = ".png";
  if (!path.starts_with(kFolder) || path.find("..") != std::string_view::npos) return false;
  path.remove_prefix(kFolder.size());
  if (!path.ends_with(kExtension)) return false;
  path.remove_suffix(kExtension.size());
  return isSafeIdentifier(path);
}

Layout decoded(const JsonElement& record) {
  try {
    return decodeJson<Layout>(record);
  } catch (const JsonError& error) {
    throw UnreadableLayout(std::string("The file is not a readable layout (") + error.what() + ")");
  }
}

const JsonElement& parsed(JsonParser& parser, std::string_view bytes) {
  try {
    return parser.parse(bytes);
  } catch (const JsonError& error) {
    throw UnreadableLayout(std::string("The file is not a readable layout (") + error.what() + ")");
  }
}

}  // namespace

template <>
struct JsonFields<SchemaProbe> {
  static constexpr std::array kFields = {jsonField<&SchemaProbe::schemaVersion>("schemaVersion")};
};

bool isSafeIdentifier(std::string_view identifier) {
  constexpr std::size_t kLongest = 128;
  return !identifier.empty() && identifier.size() <= kLongest &&
         std::all_of(identifier.begin(), identifier.end(),
                     [](char c) { return kSafeCharacters[static_cast<unsigned char>(c)]; }) &&
         identifier != "." && identifier != "..";
}

std::optional<std::int64_t> newerSchemaVersion(const JsonElement& record) {
  try {
    const std::int64_t version = decodeJson<SchemaProbe>(record).schemaVersion;
    if (version > Layout::kSchemaVersion) return version;
  } catch (const JsonError&) {
    // What is wrong with the record is found when it is decoded.
  }
  return std::nullopt;
}

Layout decodeLayout(JsonParser& parser, std::string_view bytes) {
  const JsonElement& record = parsed(parser, bytes);
  if (const auto version = newerSchemaVersion(record)) {
    throw UnreadableLayout("Saved by a newer version of Velto (format " + std::to_string(*version) + ").");
  }
  Layout layout = decoded(record);
  if (!isSafeIdentifier(layout.id)) {
    throw UnreadableLayout("The layout's identifier is not one Velto can safely use as a filename.");
  }
  layout.schemaVersion = std::max(layout.schemaVersion, Layout::kSchemaVersion);
  for (LayoutWindow& window : layout.windows) {
    if (window.thumbnail && !isSafeThumbnail(*window.thumbnail)) window.thumbnail.reset();
  }
  return layout;
}

}  // namespace velto
