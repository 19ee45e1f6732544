#include "browsing/safari/SafariImportGap.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "browsing/history/HistoryFormat.h"

namespace velto {
namespace {

/// A visit as files keep it: the page within a whole second. Finer times would make every imported visit look
/// new. The URL lies in the entry.
struct VisitKey {
  std::int64_t second = 0;
  std::string_view url;
  bool operator==(const VisitKey&) const = default;
};

struct VisitKeyHash {
  std::size_t operator()(const VisitKey& key) const {
    constexpr std::size_t kSpread = 0x9E3779B97F4A7C15;
    return std::hash<std::string_view>()(key.url) ^ (static_cast<std::size_t>(key.second) * kSpread);
  }
};

VisitKey visitKey(const HistoryEntry& entry) {
  return {static_cast<std::int64_t>(importedTime(entry.timestamp).secondsSince1970), entry.url};
}

void addCookies(SafariImportGap& gap, const std::vector<SafariCookie>& cookies,
                const SafariSiteFilter& filter, const std::map<CookieKey, std::string>& existing,
                WallTime now) {
  for (const SafariCookie& cookie : cookies) {
    // One that never tells a time has none either.
    if (!(cookie.expires > now) || !filter.matches(cookie.domain)) continue;
    const auto known = existing.find(cookieKey(cookie.domain, cookie.path, cookie.name));
    if (known == existing.end()) {
      gap.missingCookies.push_back(cookie);
    } else if (known->second == cookie.value) {
      ++gap.cookiesInSync;
    } else {
      gap.changedCookies.push_back(cookie);
    }
  }
}

void addVisits(SafariImportGap& gap, const std::vector<HistoryEntry>& history,
               const std::vector<HistoryEntry>& imported) {
  std::unordered_set<VisitKey, VisitKeyHash> known;
  known.reserve(imported.size());
  for (const HistoryEntry& entry : imported) known.insert(visitKey(entry));
  for (const HistoryEntry& entry : history) {
    if (known.contains(visitKey(entry))) {
      ++gap.visitsInSync;
    } else {
      gap.missingVisits.push_back(entry);
    }
  }
}

}  // namespace

WallTime importedTime(WallTime time) {
  if (std::isnan(time.secondsSince1970)) return {};
  return readableHistoryTime({std::trunc(time.secondsSince1970)});
}

std::map<CookieKey, std::string> valuesByKey(const std::vector<HttpCookie>& cookies) {
  std::map<CookieKey, std::string> values;
  for (const HttpCookie& cookie : cookies) {
    values.insert_or_assign(cookieKey(cookie.domain, cookie.path, cookie.name), cookie.value);
  }
  return values;
}

SafariImportGap SafariImportGap::compute(const SafariData& data, const SafariSiteFilter& filter,
                                         const std::map<CookieKey, std::string>& existingCookies,
                                         const std::vector<HistoryEntry>& importedVisits, WallTime now) {
  SafariImportGap gap;
  addCookies(gap, data.cookies, filter, existingCookies, now);
  addVisits(gap, data.history, importedVisits);
  return gap;
}

}  // namespace velto
