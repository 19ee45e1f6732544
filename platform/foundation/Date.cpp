#include "platform/foundation/Date.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace velto {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
/// 2001-01-01T00:00:00Z, from which dates in the files are counted: fractions are rounded as they are there.
constexpr double kReferenceDate = 978307200;
/// 1582-10-15, the first day of the Gregorian calendar; the days before it have Julian dates.
constexpr std::int64_t kFirstGregorianDay = -141427;

struct CivilDate {
  std::int64_t year = 1970;
  std::int64_t month = 1;
  std::int64_t day = 1;
};

std::int64_t floorDivide(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

/// Days since 1970-01-01. Months are counted from March, so that the leap day is the last of its year.
std::int64_t dayNumber(const CivilDate& date, bool gregorian) {
  const std::int64_t year = date.month > 2 ? date.year : date.year - 1;
  const std::int64_t month = (date.month + 9) % 12;
  const std::int64_t julian = 365 * year + floorDivide(year, 4) + (153 * month + 2) / 5 + date.day - 1;
  return gregorian ? julian - floorDivide(year, 100) + floorDivide(year, 400) - 719468 : julian - 719470;
}

CivilDate civilDate(std::int64_t day) {
  const bool gregorian = day >= kFirstGregorianDay;
  std::int64_t century = 0;  // the days that the Gregorian calendar leaves out, as whole centuries
  std::int64_t shifted = day + (gregorian ? 719468 : 719470);
  if (gregorian) {
    century = floorDivide(4 * shifted + 3, 146097);
    shifted += century - floorDivide(century, 4);
  }
  const std::int64_t year = floorDivide(4 * shifted + 3, 1461);
  const std::int64_t dayOfYear = shifted - floorDivide(1461 * year, 4);
  const std::int64_t month = (5 * dayOfYear + 2) / 153;
  const std::int64_t dayOfMonth = dayOfYear - (153 * month + 2) / 5 + 1;
  return {month < 10 ? year : year + 1, month < 10 ? month + 3 : month - 9, dayOfMonth};
}

std::int64_t wholeSeconds(WallTime time) {
  constexpr double kLimit = 1e15;  // thirty million years either way
  const double sinceReference = time.secondsSince1970 - kReferenceDate;
  if (std::isnan(sinceReference)) return 0;
  return static_cast<std::int64_t>(std::floor(std::clamp(sinceReference, -kLimit, kLimit)) + kReferenceDate);
}

std::string format(WallTime time, const char* pattern) {
  const std::int64_t seconds = wholeSeconds(time);
  const std::int64_t day = floorDivide(seconds, kSecondsPerDay);
  const std::int64_t ofDay = seconds - day * kSecondsPerDay;
  const CivilDate date = civilDate(day);
  std::array<char, 64> buffer{};
  const int length = std::snprintf(buffer.data(), buffer.size(), pattern, date.year < 0 ? "-" : "",
                                   static_cast<long long>(std::abs(date.year)), static_cast<int>(date.month),
                                   static_cast<int>(date.day), static_cast<int>(ofDay / 3600),
                                   static_cast<int>(ofDay / 60 % 60), static_cast<int>(ofDay % 60));
  return {buffer.data(), static_cast<std::size_t>(length)};
}

/// The number that these few digits spell, -1 when there is anything else.
std::int64_t digits(std::string_view text) {
  std::int64_t number = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return -1;
    number = 10 * number + (c - '0');
  }
  return number;
}

std::optional<std::int64_t> offsetSeconds(std::string_view zone) {
  if (zone == "Z") return 0;
  if (zone.size() != 6 || (zone[0] != '+' && zone[0] != '-') || zone[3] != ':') return std::nullopt;
  const std::int64_t hours = digits(zone.substr(1, 2));
  const std::int64_t minutes = digits(zone.substr(4, 2));
  if (hours < 0 || minutes < 0 || minutes > 59 || hours * 60 + minutes > 18 * 60) return std::nullopt;
  return (zone[0] == '-' ? -60 : 60) * (hours * 60 + minutes);
}

}  // namespace

std::string formatIso8601(WallTime time) { return format(time, "%s%04lld-%02d-%02dT%02d:%02d:%02dZ"); }

std::string formatLogDate(WallTime time) { return format(time, "%s%04lld-%02d-%02d %02d:%02d:%02d +0000"); }

std::optional<WallTime> parseIso8601(std::string_view text) {
  constexpr std::size_t kDateAndTime = 19;
  if (text.size() <= kDateAndTime || text[4] != '-' || text[7] != '-' || text[10] != 'T' || text[13] != ':' ||
      text[16] != ':') {
    return std::nullopt;
  }
  const std::optional<std::int64_t> offset = offsetSeconds(text.substr(kDateAndTime));
  const CivilDate date{digits(text.substr(0, 4)), digits(text.substr(5, 2)), digits(text.substr(8, 2))};
  const std::int64_t hour = digits(text.substr(11, 2));
  const std::int64_t minute = digits(text.substr(14, 2));
  const std::int64_t second = digits(text.substr(17, 2));
  if (!offset || date.year < 0 || date.month < 1 || date.month > 12 || date.day < 1 || date.day > 31 ||
      hour < 0 || minute < 0 || second < 0) {
    return std::nullopt;
  }
  std::int64_t day = dayNumber(date, true);
  if (day < kFirstGregorianDay) day = dayNumber(date, false);
  const std::int64_t seconds = day * kSecondsPerDay + hour * 3600 + minute * 60 + second - *offset;
  return WallTime{static_cast<double>(seconds)};
}

}  // namespace velto
