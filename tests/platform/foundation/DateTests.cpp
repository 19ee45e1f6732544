#include <limits>
#include <utility>

#include <gtest/gtest.h>

#include "platform/foundation/Date.h"

namespace velto {
namespace {

TEST(Date, WritesWholeSecondsTowardsThePast) {
  const std::pair<double, const char*> cases[] = {
      {0.9999999, "1970-01-01T00:00:00Z"},
      {0.99999999, "1970-01-01T00:00:01Z"},
      {-0.1, "1969-12-31T23:59:59Z"},
      {-1.0000001, "1969-12-31T23:59:58Z"},
      {1704164645.999999, "2024-01-02T03:04:05Z"},
      {253402300800, "10000-01-01T00:00:00Z"},
      {-12219292800, "1582-10-15T00:00:00Z"},
      {-12219292801, "1582-10-04T23:59:59Z"},
      {-62135596800, "0001-01-03T00:00:00Z"},
      {-62135769600, "0001-01-01T00:00:00Z"},
      {-1e11, "-1199-02-26T14:13:20Z"},
  };
  for (const auto& [seconds, text] : cases) EXPECT_EQ(formatIso8601({seconds}), text) << seconds;
  EXPECT_EQ(formatLogDate({1704164645.5}), "2024-01-02 03:04:05 +0000");
}

TEST(Date, WritesAnyNumber) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double seconds : {infinity, -infinity, std::numeric_limits<double>::quiet_NaN(), 1e300}) {
    EXPECT_TRUE(formatIso8601({seconds}).ends_with("Z"));
  }
}

TEST(Date, ReadsTheStrictForm) {
  const std::pair<const char*, double> cases[] = {
      {"2024-01-02T03:04:05Z", 1704164645},      {"2024-01-02T03:04:05+00:00", 1704164645},
      {"2024-01-02T03:04:05-00:00", 1704164645}, {"2024-01-02T08:34:05+05:30", 1704164645},
      {"2024-01-01T22:04:05-05:00", 1704164645}, {"2024-02-29T00:00:00Z", 1709164800},
      {"2024-02-30T00:00:00Z", 1709251200},      {"2024-01-02T24:00:00Z", 1704240000},
      {"2024-01-02T03:04:60Z", 1704164700},      {"1582-10-15T00:00:00Z", -12219292800},
      {"1582-10-04T23:59:59Z", -12219292801},    {"0001-01-01T00:00:00Z", -62135769600},
  };
  for (const auto& [text, seconds] : cases) EXPECT_EQ(parseIso8601(text), WallTime{seconds}) << text;
}

TEST(Date, RefusesEverythingElse) {
  for (const char* text : {"",
                           "2024-01-02",
                           "2024-01-02T03:04:05",
                           "2024-01-02T03:04Z",
                           "2024-01-02t03:04:05Z",
                           "2024-01-02 03:04:05Z",
                           " 2024-01-02T03:04:05Z",
                           "2024-01-02T03:04:05Zjunk",
                           "2024-01-02T03:04:05.1Z",
                           "2024-01-02T03:04:05+05",
                           "2024-01-02T03:04:05+0530",
                           "2024-01-02T03:04:05+18:01",
                           "2024-01-02T03:04:05+05:60",
                           "2024-01-02T03:04:05+-5:30",
                           "2024-00-02T03:04:05Z",
                           "2024-13-02T03:04:05Z",
                           "2024-01-32T03:04:05Z",
                           "2024-1-2T3:4:5Z",
                           "02024-01-02T03:04:05Z",
                           "-024-01-02T03:04:05Z",
                           "2024-01-02T+3:04:05Z",
                           "20240102T030405Z"}) {
    EXPECT_FALSE(parseIso8601(text)) << text;
  }
}

TEST(Date, EveryDayReadsBack) {
  for (double seconds = -62135769600; seconds < 253402300800; seconds += 86400 * 97 + 12345) {
    EXPECT_EQ(parseIso8601(formatIso8601({seconds})), WallTime{seconds}) << seconds;
  }
}

}  // namespace
}  // namespace velto
