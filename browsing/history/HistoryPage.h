#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "browsing/history/HistoryEntry.h"
#include "platform/foundation/Url.h"
#include "platform/web/UrlScheme.h"

namespace velto {

/// The page that shows the whole history: where it is, and what it is given to show.
class HistoryPage {
 public:
  static constexpr const char* kScheme = "velto-history";
  static constexpr const char* kHost = "history";
  static constexpr const char* kResource = "HistoryPage.html";

  enum class Route { notFound, page, forbidden, data };

  /// One visit. The names are short because all of them go to the page at once.
  struct Row {
    /// Address and title.
    std::string u;
    std::string t;
    /// Milliseconds since 1970, cut towards zero.
    std::int64_t d = 0;
    /// "p" for what was visited here, "s" for what came from Safari.
    std::string s;
    bool operator==(const Row&) const = default;
  };

  HistoryPage() = delete;

  /// Where the page is; with a site, showing only what lies there.
  static Url url(const std::optional<std::string>& domain);
  /// What a request is answered with: the visits only when the history page itself asks.
  static Route routeOf(const std::optional<Url>& request, const std::optional<Url>& mainDocument);
  /// Newest first; of the same moment, what was visited here first. `domain` is a list of sites that limits
  /// the rows.
  static std::vector<Row> rows(const std::vector<HistoryEntry>& own,
                               const std::vector<HistoryEntry>& imported,
                               const std::optional<std::string>& domain);
  /// The same rows as the JSON text of an array of objects, straight from the entries.
  static std::string encodedRows(const std::vector<HistoryEntry>& own,
                                 const std::vector<HistoryEntry>& imported,
                                 const std::optional<std::string>& domain);
  /// An answer that nobody keeps.
  static void respond(UrlSchemeTask& task, int status, const std::string& contentType, std::string body);
};

}  // namespace velto
