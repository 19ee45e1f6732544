#include "browsing/history/HistoryPage.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <limits>
#include <span>
#include <utility>

#include "browsing/safari/SafariSiteFilter.h"
#include "platform/foundation/Text.h"

namespace velto {

namespace {

constexpr const char* kDataPath = "/data.json";
constexpr char kOwn = 'p';
constexpr char kImported = 's';

/// A row before it is written out.
struct Visit {
  const HistoryEntry* entry;
  std::int64_t milliseconds;
  char source;
};

std::int64_t millisecondsOf(WallTime time) {
  constexpr double kBeyond = 9223372036854775808.0;  // 2^63
  const double milliseconds = time.secondsSince1970 * 1000.0;
  if (std::isnan(milliseconds)) return 0;
  if (milliseconds >= kBeyond) return std::numeric_limits<std::int64_t>::max();
  if (milliseconds < -kBeyond) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(milliseconds);
}

bool isIn(const SafariSiteFilter& filter, const HistoryEntry& entry) {
  if (filter.domains.empty()) return true;
  const auto url = Url::parse(entry.url);
  const auto host = url ? url->host() : std::nullopt;
  return host && filter.matches(*host);
}

bool isNewer(const Visit& a, const Visit& b) { return a.milliseconds > b.milliseconds; }

std::vector<Visit> visitsOf(const std::vector<HistoryEntry>& own, const std::vector<HistoryEntry>& imported,
                            const std::optional<std::string>& domain) {
  const SafariSiteFilter filter = SafariSiteFilter::parse(domain.value_or(""));
  std::vector<Visit> visits;
  visits.reserve(own.size() + imported.size());
  const auto append = [&](const std::vector<HistoryEntry>& entries, char source) {
    const auto first = static_cast<std::ptrdiff_t>(visits.size());
    for (const HistoryEntry& entry : entries) {
      if (isIn(filter, entry)) visits.push_back({&entry, millisecondsOf(entry.timestamp), source});
    }
    // A file is nearly always in this order already.
    const auto begin = visits.begin() + first;
    if (!std::is_sorted(begin, visits.end(), isNewer)) std::stable_sort(begin, visits.end(), isNewer);
    return first;
  };
  append(own, kOwn);
  const auto middle = append(imported, kImported);
  std::inplace_merge(visits.begin(), visits.begin() + middle, visits.end(), isNewer);
  return visits;
}

/// What a byte of a text becomes: itself (1), a backslash and a letter (2), or a number (6).
constexpr std::array<unsigned char, 256> kWidths = [] {
  std::array<unsigned char, 256> widths{};
  for (std::size_t byte = 0; byte < widths.size(); ++byte) widths[byte] = byte < 0x20 ? 6 : 1;
  for (const char each : {'"', '\\', '/', '\b', '\f', '\n', '\r', '\t'}) {
    widths[static_cast<unsigned char>(each)] = 2;
  }
  return widths;
}();
constexpr std::size_t kWidest = 6;

constexpr char letterOf(char c) {
  switch (c) {
    case '\b':
      return 'b';
    case '\f':
      return 'f';
    case '\n':
      return 'n';
    case '\r':
      return 'r';
    case '\t':
      return 't';
    default:
      return c;
  }
}

char* writeEscape(char* to, char c) {
  *to++ = '\\';
  if (kWidths[static_cast<unsigned char>(c)] == 2) {
    *to++ = letterOf(c);
    return to;
  }
  constexpr std::string_view kDigits = "0123456789abcdef";
  const auto code = static_cast<unsigned char>(c);
  for (const char each : {'u', '0', '0', kDigits[code >> 4U], kDigits[code & 15U]}) *to++ = each;
  return to;
}

char* writePlain(char* to, std::string_view text) {
  std::memcpy(to, text.data(), text.size());
  return to + text.size();
}

char* writeText(char* to, std::string_view text) {
  for (const char c : text) {
    if (kWidths[static_cast<unsigned char>(c)] == 1) {
      *to++ = c;
    } else {
      to = writeEscape(to, c);
    }
  }
  return to;
}

constexpr std::size_t kLongestFrame = 64;  // keys, braces, source and number

char* writeVisit(char* to, const Visit& visit) {
  to = writeText(writePlain(to, R"({"u":")"), visit.entry->url);
  to = writeText(writePlain(to, R"(","t":")"), visit.entry->title);
  to = writePlain(to, R"(","d":)");
  to = std::to_chars(to, to + std::numeric_limits<std::int64_t>::digits10 + 2, visit.milliseconds).ptr;
  to = writePlain(to, R"(,"s":")");
  *to++ = visit.source;
  return writePlain(to, R"("},)");
}

std::size_t textSize(std::span<const Visit> visits) {
  std::size_t size = 0;
  for (const Visit& visit : visits) size += visit.entry->url.size() + visit.entry->title.size();
  return size;
}

/// Adds rows, each with a comma behind it.
void append(std::string& json, std::span<const Visit> visits) {
  const std::size_t before = json.size();
  const std::size_t most = before + kWidest * textSize(visits) + kLongestFrame * visits.size();
  json.resize_and_overwrite(most, [&](char* data, std::size_t) {
    char* to = data + before;
    for (const Visit& visit : visits) to = writeVisit(to, visit);
    return static_cast<std::size_t>(to - data);
  });
}

}  // namespace

Url HistoryPage::url(const std::optional<std::string>& domain) {
  std::string text = std::string(kScheme) + "://" + kHost + "/";
  if (domain && !domain->empty()) text += "?" + encodeQuery({{"domain", normalizeSite(*domain)}});
  return Url::parse(text).value();
}

HistoryPage::Route HistoryPage::routeOf(const std::optional<Url>& request,
                                        const std::optional<Url>& mainDocument) {
  if (!request || request->lowercasedHost() != kHost) return Route::notFound;
  if (request->encodedPath() != kDataPath) return Route::page;
  const bool isForHistoryPage = mainDocument && mainDocument->lowercasedScheme() == kScheme;
  return isForHistoryPage ? Route::data : Route::forbidden;
}

std::vector<HistoryPage::Row> HistoryPage::rows(const std::vector<HistoryEntry>& own,
                                                const std::vector<HistoryEntry>& imported,
                                                const std::optional<std::string>& domain) {
  const std::vector<Visit> visits = visitsOf(own, imported, domain);
  std::vector<Row> rows;
  rows.reserve(visits.size());
  for (const Visit& visit : visits) {
    rows.push_back({visit.entry->url, visit.entry->title, visit.milliseconds, std::string(1, visit.source)});
  }
  return rows;
}

std::string HistoryPage::encodedRows(const std::vector<HistoryEntry>& own,
                                     const std::vector<HistoryEntry>& imported,
                                     const std::optional<std::string>& domain) {
  constexpr std::size_t kAtOnce = 1024;
  const std::vector<Visit> visits = visitsOf(own, imported, domain);
  const std::span<const Visit> all(visits);
  std::string json;
  // Few characters of an address or a title need more than one byte.
  const std::size_t texts = textSize(all);
  json.reserve(texts + texts / 8 + kLongestFrame * visits.size() +
               kWidest * textSize(all.first(std::min(kAtOnce, all.size()))));
  json = "[";
  for (std::size_t at = 0; at < all.size(); at += kAtOnce) {
    append(json, all.subspan(at, std::min(kAtOnce, all.size() - at)));
  }
  if (!visits.empty()) json.pop_back();
  json += "]";
  if (!isValidUtf8(json)) return repairUtf8(json);
  return json;
}

void HistoryPage::respond(UrlSchemeTask& task, int status, const std::string& contentType, std::string body) {
  task.respond(status, {{"Content-Type", contentType}, {"Cache-Control", "no-store"}}, std::move(body));
}

}  // namespace velto
