#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "browsing/safari/CookieKey.h"
#include "browsing/safari/SafariData.h"
#include "browsing/safari/SafariSiteFilter.h"

namespace velto {

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

  bool operator==(const SafariImportGap&) const = default;
};

}  // namespace velto
