#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "browsing/history/HistoryEntry.h"
#include "browsing/history/HistoryStore.h"
#include "platform/foundation/LocalCalendar.h"

namespace velto {

/// A row of the History menu: what it says, and what it says instead while its address is to be copied.
struct HistoryMenuRow {
  std::string title;
  std::string alternateTitle;
  /// The address that is opened or copied; its place in the menu. A disabled row has neither.
  std::string representedUrl;
  std::size_t tag = 0;
  bool isEnabled = true;
  bool operator==(const HistoryMenuRow&) const = default;
};

constexpr std::size_t kMostHistoryMenuRows = 15;

/// A row for each of the first entries, or the one row that says that there are none.
std::vector<HistoryMenuRow> historyMenuRows(const std::vector<HistoryEntry>& entries, WallTime now,
                                            const LocalCalendar& calendar);
std::vector<HistoryMenuRow> historyMenuRows(const HistoryStore& store, WallTime now,
                                            const LocalCalendar& calendar);

}  // namespace velto
