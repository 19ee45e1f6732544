#include "browsing/history/HistoryFile.h"

#include <string>
#include <string_view>
#include <utility>

#include "platform/foundation/Json.h"

namespace velto {
namespace {

const std::string* textMember(const JsonValue& object, std::string_view name) {
  const JsonValue* member = object.member(name);
  return member == nullptr ? nullptr : member->as<std::string>();
}

std::optional<HistoryEntry> entryFrom(const JsonValue& value) {
  const std::string* url = textMember(value, "url");
  const std::string* title = textMember(value, "title");
  const std::string* timestamp = textMember(value, "timestamp");
  if (url == nullptr || title == nullptr || timestamp == nullptr) return std::nullopt;
  const auto time = parseIso8601(*timestamp);
  if (!time) return std::nullopt;
  return HistoryEntry{*url, *title, *time};
}

}  // namespace

std::vector<HistoryEntry> readHistoryFile(const FileManager& files, const std::filesystem::path& path) {
  const auto text = files.readIfPossible(path);
  const auto json = text ? readJson(*text) : std::nullopt;
  const auto* array = json ? json->as<JsonValue::Array>() : nullptr;
  if (array == nullptr) return {};

  std::vector<HistoryEntry> entries;
  entries.reserve(array->size());
  for (const JsonValue& value : *array) {
    auto entry = entryFrom(value);
    if (!entry) return {};
    entries.push_back(std::move(*entry));
  }
  return entries;
}

std::optional<Url> firstWebPage(const std::vector<HistoryEntry>& entries) {
  for (const HistoryEntry& entry : entries) {
    auto url = Url::parse(entry.url);
    if (!url) continue;
    const std::string scheme = url->lowercasedScheme();
    if (scheme == "http" || scheme == "https") return url;
  }
  return std::nullopt;
}

}  // namespace velto
