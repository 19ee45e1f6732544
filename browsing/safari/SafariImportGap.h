#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "browsing/safari/CookieKey.h"
#include "browsing/safari/SafariData.h"
#include "browsing/safari/SafariSiteFilter.h"
#include "platform/foundation/HttpCookie.h"

namespace velto {

/// What lies in a cookie store; of several cookies under one key the last.
std::map<CookieKey, std::string> valuesByKey(const std::vector<HttpCookie>& cookies);

/// The time of a visit as a file keeps it: whole seconds, cut towards zero, within what can be read again.
WallTime importedTime(WallTime time);

/// What Safari has and this application does not. Only values count: another expiry makes no cookie changed.
struct SafariImportGap {
  std::vector<SafariCookie> missingCookies;
  std::vector<SafariCookie> changedCookies;
  std::size_t cookiesInSync = 0;
  std::vector<HistoryEntry> missingVisits;
  std::size_t visitsInSync = 0;

  /// The data's history is filtered already; its cookies are filtered here.
  static SafariImportGap compute(const SafariData& data, const SafariSiteFilter& filter,
                                 const std::map<CookieKey, std::string>& existingCookies,
                                 const std::vector<HistoryEntry>& importedVisits, WallTime now);

  [[nodiscard]] bool hasCookies() const { return !missingCookies.empty() || !changedCookies.empty(); }
  [[nodiscard]] bool hasSomethingToDo() const { return hasCookies() || !missingVisits.empty(); }
  [[nodiscard]] bool hasSomethingInSync() const { return cookiesInSync + visitsInSync > 0; }

  bool operator==(const SafariImportGap&) const = default;
};

}  // namespace velto
