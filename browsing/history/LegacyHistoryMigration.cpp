#include "browsing/history/LegacyHistoryMigration.h"

#include <optional>
#include <string_view>

#include "browsing/history/HistoryStore.h"
#include "platform/foundation/JsonRecord.h"

namespace velto {
namespace {

using Outcome = LegacyHistoryMigration::Outcome;

/// An entry as older versions kept it.
struct LegacyEntry {
  std::string url;
  std::string title;
  /// In seconds since 2001-01-01T00:00:00Z.
  double timestamp = 0;
};

}  // namespace

template <>
struct JsonFields<LegacyEntry> {
  static constexpr std::array kFields = {jsonField<&LegacyEntry::url>("url"),
                                         jsonField<&LegacyEntry::title>("title"),
                                         jsonField<&LegacyEntry::timestamp>("timestamp")};
};

namespace {

std::optional<std::vector<HistoryEntry>> decodeLegacyList(const PropertyList::Data& data) {
  std::vector<LegacyEntry> list;
  try {
    JsonParser parser;
    decodeJson(parser.parse({reinterpret_cast<const char*>(data.data()), data.size()}), list);
  } catch (const JsonError&) {
    return std::nullopt;
  }
  std::vector<HistoryEntry> entries;
  entries.reserve(list.size());
  for (LegacyEntry& entry : list) {
    entries.push_back({std::move(entry.url), std::move(entry.title), sinceReferenceDate(entry.timestamp)});
  }
  return entries;
}

}  // namespace

LegacyHistoryMigration HistoryStore::migrateLegacyDefaults(UserDefaults& defaults) {
  const auto value = defaults.value(kLegacyKey);
  const auto* data = value ? value->as<PropertyList::Data>() : nullptr;
  if (fileManager_.exists(fileURL())) {
    if (data != nullptr) defaults.remove(kLegacyKey);
    return {Outcome::alreadyOnDisk};
  }
  if (data == nullptr) return {Outcome::nothingToMigrate};
  const auto entries = decodeLegacyList(*data);
  if (!entries) return {Outcome::failed};
  try {
    save(*entries);
  } catch (const FileError&) {
    return {Outcome::failed};
  }
  if (load() != *entries) return {Outcome::failed};
  defaults.remove(kLegacyKey);
  return {Outcome::migrated, entries->size()};
}

}  // namespace velto
