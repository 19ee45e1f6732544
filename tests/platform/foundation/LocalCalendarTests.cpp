#include <string>

#include <gtest/gtest.h>

#include "platform/foundation/LocalCalendar.h"

namespace velto {
namespace {

WallTime at(const std::string& time) { return parseIso8601(time).value(); }

TEST(LocalCalendar, CountsTheDaysThatCanBeAdded) {
  const LocalCalendar newYork("en_US", "America/New_York");
  const struct {
    const char* from;
    const char* to;
    int days;
  } cases[] = {
      {"2024-03-09T12:00:00-05:00", "2024-03-10T12:00:00-04:00", 1},  // 23 hours
      {"2024-03-09T12:00:00-05:00", "2024-03-10T11:59:00-04:00", 0},
      {"2024-03-09T02:30:00-05:00", "2024-03-10T03:29:00-04:00", 0},  // half past two is no time of that day
      {"2024-03-09T02:30:00-05:00", "2024-03-10T03:30:00-04:00", 1},
      {"2024-11-02T12:00:00-04:00", "2024-11-03T12:00:00-05:00", 1},  // 25 hours
      {"2024-11-02T12:00:00-04:00", "2024-11-03T11:00:00-05:00", 0},
      {"2024-01-01T23:59:00-05:00", "2024-01-02T00:01:00-05:00", 0},
      {"2024-01-02T00:00:00-05:00", "2024-01-01T00:01:00-05:00", 0},
      {"2024-01-02T00:00:00-05:00", "2024-01-01T00:00:00-05:00", -1},
  };
  for (const auto& c : cases)
    EXPECT_EQ(newYork.wholeDays(at(c.from), at(c.to)), c.days) << c.from << " " << c.to;
  EXPECT_TRUE(newYork.isSameDay(at("2024-03-10T00:00:00-05:00"), at("2024-03-10T23:59:59-04:00")));
  EXPECT_FALSE(newYork.isSameDay(at("2024-03-10T00:00:00-05:00"), at("2024-03-09T23:59:59-05:00")));
  EXPECT_FALSE(newYork.isSameDay(at("2024-03-10T00:00:00-05:00"), at("2023-03-10T00:00:00-05:00")));
  EXPECT_EQ(newYork.addingDays(at("2024-03-11T12:00:00-04:00"), -2), at("2024-03-09T12:00:00-05:00"));
}

TEST(LocalCalendar, WritesDatesInThePersonsLanguage) {
  const WallTime time = at("2024-01-01T22:04:05-05:00");
  const LocalCalendar newYork("en_US", "America/New_York");
  EXPECT_EQ(newYork.text(time, "h:mm a"), "10:04 PM");
  EXPECT_EQ(newYork.text(time, "EEEE"), "Monday");
  EXPECT_EQ(newYork.text(time, "MMM d"), "Jan 1");
  EXPECT_EQ(LocalCalendar("de_DE", "Europe/Berlin").text(time, "EEEE"), "Dienstag");
  for (const double extreme : {-1e300, 1e300}) {
    (void)newYork.text({extreme}, "h:mm a");
    (void)newYork.wholeDays({extreme}, time);
    EXPECT_FALSE(newYork.isSameDay({extreme}, time));
  }
}

}  // namespace
}  // namespace velto
