#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "browsing/history/HistoryMenuRows.h"

namespace velto {
namespace {

WallTime at(const char* time) { return parseIso8601(time).value(); }

class HistoryMenuRowsTest : public testing::Test {
 protected:
  /// The row of an entry, at noon of Wednesday, 2024-03-13, in New York.
  HistoryMenuRow row(const HistoryEntry& entry) {
    return historyMenuRows(std::vector<HistoryEntry>{entry}, at("2024-03-13T12:00:00-04:00"), calendar_)
        .front();
  }

  LocalCalendar calendar_{"en_US", "America/New_York"};
};

TEST_F(HistoryMenuRowsTest, TellsTitleSiteAndTime) {
  const struct {
    HistoryEntry entry;
    const char* title;
    const char* alternateTitle;
  } cases[] = {
      {{"https://a.example/b", "A", at("2024-03-13T11:05:59-04:00")},
       "A (a.example) - 11:05 AM",
       "Copy URL: A"},
      {{"https://a.example/b", "", at("2024-03-12T00:00:00-04:00")},
       "https://a.example/b (a.example) - Yesterday",
       "Copy URL: https://a.example/b"},
      {{"no url", "", at("2024-03-13T23:59:00-04:00")}, "no url (no url) - 11:59 PM", "Copy URL: no url"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(row(c.entry), (HistoryMenuRow{c.title, c.alternateTitle, c.entry.url, 0, true}));
  }
  std::string families;
  for (int i = 0; i < 40; ++i) families += "👨‍👩‍👧";
  EXPECT_EQ(row({"u", families, {}}).alternateTitle, "Copy URL: " + families);
  EXPECT_EQ(row({"u", families + "é", {}}).alternateTitle, "Copy URL: " + families + "...");
}

TEST_F(HistoryMenuRowsTest, TellsWhenInDaysOfTheCalendar) {
  const struct {
    const char* time;
    const char* when;
  } cases[] = {
      {"2024-03-11T23:59:59-04:00", "Monday"},    {"2024-03-07T12:00:00-05:00", "Thursday"},
      {"2024-03-06T12:00:01-05:00", "Wednesday"},  // the clocks went forward in between
      {"2024-03-06T12:00:00-05:00", "Mar 6"},     {"2023-03-13T12:00:00-04:00", "Mar 13"},
      {"2024-03-14T00:00:00-04:00", "Thursday"},  {"2034-03-14T00:00:00-04:00", "Tuesday"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(row({"u", "T", at(c.time)}).title, std::string("T (u) - ") + c.when) << c.time;
  }
}

TEST_F(HistoryMenuRowsTest, ShowsTheFirstFifteen) {
  const WallTime now = at("2024-03-13T12:00:00-04:00");
  const std::vector<HistoryEntry> entries(16, {"u", "T", now});
  EXPECT_EQ(historyMenuRows(entries, now, calendar_).size(), 15U);
  EXPECT_FALSE(historyMenuRows(std::vector<HistoryEntry>(), now, calendar_).front().isEnabled);
}

}  // namespace
}  // namespace velto
