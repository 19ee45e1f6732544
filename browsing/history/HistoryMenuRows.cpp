#include "browsing/history/HistoryMenuRows.h"

#include <algorithm>
#include <string_view>

#include "platform/foundation/Characters.h"
#include "platform/foundation/Url.h"

namespace velto {
namespace {

std::string shortTitle(const HistoryEntry& entry) {
  constexpr std::size_t kMostCharacters = 40;
  if (entry.title.empty()) return entry.url;
  const auto all = characters(entry.title);
  if (all.size() <= kMostCharacters) return entry.title;
  const auto length = static_cast<std::size_t>(all[kMostCharacters].data() - entry.title.data());
  return entry.title.substr(0, length) + "...";
}

std::string site(const HistoryEntry& entry) {
  const auto url = Url::parse(entry.url);
  const auto host = url ? url->host() : std::nullopt;
  return host.value_or(entry.url);
}

std::string when(WallTime time, WallTime now, const LocalCalendar& calendar) {
  constexpr int kDaysWithNames = 6;
  if (calendar.isSameDay(time, now)) return calendar.text(time, "h:mm a");
  if (calendar.isSameDay(time, calendar.addingDays(now, -1))) return "Yesterday";
  const auto days = calendar.wholeDays(time, now);
  return calendar.text(time, days && *days <= kDaysWithNames ? "EEEE" : "MMM d");
}

}  // namespace

std::vector<HistoryMenuRow> historyMenuRows(const std::vector<HistoryEntry>& entries, WallTime now,
                                            const LocalCalendar& calendar) {
  if (entries.empty())
    return {{.title = "No History", .alternateTitle = {}, .representedUrl = {}, .isEnabled = false}};
  std::vector<HistoryMenuRow> rows;
  for (std::size_t tag = 0; tag < std::min(entries.size(), kMostHistoryMenuRows); ++tag) {
    const HistoryEntry& entry = entries[tag];
    const std::string title = shortTitle(entry);
    rows.push_back({.title = title + " (" + site(entry) + ") - " + when(entry.timestamp, now, calendar),
                    .alternateTitle = "Copy URL: " + title,
                    .representedUrl = entry.url,
                    .tag = tag});
  }
  return rows;
}

std::vector<HistoryMenuRow> historyMenuRows(const HistoryStore& store, WallTime now,
                                            const LocalCalendar& calendar) {
  return historyMenuRows(store.newest(kMostHistoryMenuRows), now, calendar);
}

}  // namespace velto
