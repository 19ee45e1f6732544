#include <algorithm>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "browsing/history/HistoryPage.h"
#include "platform/foundation/JsonRecord.h"

namespace velto {

template <>
struct JsonFields<HistoryPage::Row> {
  using Row = HistoryPage::Row;
  static constexpr std::array kFields = {jsonField<&Row::u>("u"), jsonField<&Row::t>("t"),
                                         jsonField<&Row::d>("d"), jsonField<&Row::s>("s")};
};

namespace {

using Entries = std::vector<HistoryEntry>;

std::vector<HistoryPage::Row> decoded(const std::string& json) {
  JsonParser parser;
  std::vector<HistoryPage::Row> rows;
  decodeJson(parser.parse(json), rows);
  return rows;
}

TEST(HistoryPage, isFoundUnderAnAddressThatNamesItsSites) {
  const std::pair<std::optional<std::string>, const char*> cases[] = {
      {std::nullopt, "velto-history://history/"},
      {"", "velto-history://history/"},
      {" https://WWW.Example.com/path ", "velto-history://history/?domain=example.com"},
      {"a.example, b.example", "velto-history://history/?domain=a.example,%20b.example"},
      {"a&b=c#d", "velto-history://history/?domain=a%26b%3Dc%23d"},
  };
  for (const auto& [domain, address] : cases) EXPECT_EQ(HistoryPage::url(domain).absoluteString(), address);
}

TEST(HistoryPage, listsWhatLiesOnTheSites) {
  const Entries own = {{"https://news.example.com/a", "News", {50}},
                       {"https://notexample.com/", "Other", {40}},
                       {"about:blank", "No host", {30}},
                       {"no url at all", "No URL", {20}}};
  const Entries imported = {{"http://WWW.EXAMPLE.COM:8080/", "Safari's", {45}}};
  const std::pair<std::optional<std::string>, std::vector<std::string>> cases[] = {
      {std::nullopt, {"News", "Safari's", "Other", "No host", "No URL"}},
      {" ,", {"News", "Safari's", "Other", "No host", "No URL"}},
      {"example.com", {"News", "Safari's"}},
      {"news.example.com,notexample.com", {"News", "Other"}},
      {"com.example", {}},
  };
  for (const auto& [domain, expected] : cases) {
    std::vector<std::string> titles;
    for (const auto& row : HistoryPage::rows(own, imported, domain)) titles.push_back(row.t);
    EXPECT_EQ(titles, expected) << domain.value_or("(none)");
  }
}

TEST(HistoryPage, cutsTimesToMilliseconds) {
  const std::pair<double, std::int64_t> cases[] = {
      {1.9999, 1999},
      {-1.9999, -1999},
      {1e300, std::numeric_limits<std::int64_t>::max()},
      {-1e300, std::numeric_limits<std::int64_t>::min()},
  };
  for (const auto& [seconds, milliseconds] : cases) {
    EXPECT_EQ(HistoryPage::rows({{"u", "t", {seconds}}}, {}, std::nullopt).front().d, milliseconds);
  }
}

TEST(HistoryPage, sortsAsIfAllWereSortedAtOnceAndWritesTheSameRows) {
  std::mt19937 engine(7);
  const auto upTo = [&](int most) { return std::uniform_int_distribution(0, most)(engine); };
  for (int round = 0; round < 60; ++round) {
    Entries lists[2];
    std::vector<HistoryPage::Row> expected;
    for (int source = 0; source < 2; ++source) {
      for (int count = upTo(2000); count > 0; --count) {
        const int time = round % 2 == 0 ? count / 3 : upTo(50);
        const std::string name = std::to_string(count) + "/\"\\\n\x01ü";
        lists[source].push_back({"https://a.example/" + name, name, {static_cast<double>(time)}});
        expected.push_back(
            {"https://a.example/" + name, name, std::int64_t{1000} * time, source == 0 ? "p" : "s"});
      }
    }
    std::stable_sort(expected.begin(), expected.end(), [](auto& a, auto& b) { return a.d > b.d; });
    ASSERT_EQ(HistoryPage::rows(lists[0], lists[1], std::nullopt), expected);
    ASSERT_EQ(decoded(HistoryPage::encodedRows(lists[0], lists[1], std::nullopt)), expected);
  }
}

TEST(HistoryPage, writesCompactJson) {
  EXPECT_EQ(HistoryPage::encodedRows({}, {}, std::nullopt), "[]");
  const Entries own = {{"https://a.example/\"\\\b\f\n\r\t\x1f\x7f", "é</script>", {1.5}}};
  const Entries imported = {{"", "cut\xc3", {-1}}};
  EXPECT_EQ(HistoryPage::encodedRows(own, imported, std::nullopt),
            R"([{"u":"https:\/\/a.example\/\"\\\b\f\n\r\t\u001f)"
            "\x7f"
            R"(","t":"é<\/script>","d":1500,"s":"p"},{"u":"","t":"cut)"
            "\xef\xbf\xbd"
            R"(","d":-1000,"s":"s"}])");
}

}  // namespace
}  // namespace velto
