#pragma once

#include <cstddef>

namespace velto {

/// What came of moving the list that older versions kept among the preferences.
struct LegacyHistoryMigration {
  enum class Outcome { migrated, nothingToMigrate, alreadyOnDisk, failed };
  Outcome outcome = Outcome::failed;
  /// How many entries were moved.
  std::size_t count = 0;
  bool operator==(const LegacyHistoryMigration&) const = default;
};

}  // namespace velto
