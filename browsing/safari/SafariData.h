#pragma once

#include <optional>
#include <vector>

#include "browsing/history/HistoryEntry.h"
#include "browsing/safari/SafariCookie.h"
#include "platform/foundation/Date.h"

namespace velto {

/// Where Safari's data was read: from its own files, or from a copy that was staged at a time.
struct SafariDataLocation {
  /// Absent for Safari's own files.
  std::optional<WallTime> stagedAt;
  [[nodiscard]] bool isLive() const { return !stagedAt; }
  bool operator==(const SafariDataLocation&) const = default;
};

struct SafariData {
  SafariDataLocation location;
  std::vector<SafariCookie> cookies;
  std::vector<HistoryEntry> history;
  bool operator==(const SafariData&) const = default;
};

}  // namespace velto
