#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velto {

/// A moment of the calendar, in seconds since 1970-01-01T00:00:00Z. It may jump when the person sets the
/// clock.
struct WallTime {
  double secondsSince1970 = 0;
  auto operator<=>(const WallTime&) const = default;
};

/// Time since the machine started, in seconds. It never goes back; deadlines and animations use it.
struct Uptime {
  double seconds = 0;
  auto operator<=>(const Uptime&) const = default;
};

/// The moment so many seconds after 2001-01-01T00:00:00Z, from which the files of other programs count.
constexpr WallTime sinceReferenceDate(double seconds) { return {seconds + 978307200}; }
constexpr double secondsSinceReferenceDate(WallTime time) { return time.secondsSince1970 - 978307200; }

/// "2024-01-02T03:04:05Z": whole seconds in UTC, the fraction dropped towards the past (also before 1970).
/// Years beyond 9999 are written with all their digits. Days before 1582-10-15 have Julian dates.
std::string formatIso8601(WallTime time);

/// Reads "YYYY-MM-DDThh:mm:ss" followed by "Z" or an offset "+hh:mm"; nothing else, no fractions.
/// A day, hour, minute or second beyond its range runs over into what follows ("02-30" is a day of March); a
/// month beyond 12, a day beyond 31 and an offset beyond 18 hours are refused.
std::optional<WallTime> parseIso8601(std::string_view text);

/// "2024-01-02 03:04:05 +0000", the form of the debug log.
std::string formatLogDate(WallTime time);

}  // namespace velto
