#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "browsing/safari/SafariImportGap.h"
#include "browsing/safari/SafariImportTexts.h"

namespace velto {
namespace {

constexpr WallTime kNow{1'700'000'000};

SafariCookie cookie(const std::string& domain, const std::string& name, const std::string& value,
                    WallTime expires = {kNow.secondsSince1970 + 1}) {
  SafariCookie made;
  made.domain = domain;
  made.name = name;
  made.path = "/";
  made.value = value;
  made.expires = expires;
  return made;
}

std::vector<std::string> valuesOf(const std::vector<SafariCookie>& cookies) {
  std::vector<std::string> values;
  for (const SafariCookie& each : cookies) values.push_back(each.value);
  return values;
}

TEST(SafariSiteFilter, readsListsInNormalForm) {
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {" , ,\n", {}},
      {"https://www.Example.com/x, .news.org", {"example.com", "news.org"}},
      {"b.com a.com\nb.com", {"b.com", "a.com", "b.com"}},
      {"..www.www.a.com", {"www.a.com"}},
      {"\ta.com\t,\xC2\xA0"
       "b.com",
       {"a.com", "b.com"}},
      {"localhost:3000", {"localhost:3000"}},
      {"http://localhost:3000/x", {"localhost"}},
      {"a.com/x/y ./x www./", {"a.com"}},
      {"ÄRZTE.de", {"ärzte.de"}},
      {"https://ÄRZTE.de", {"xn--rzte-koa.de"}},
      {"\xFF", {"\xEF\xBF\xBD"}},
  };
  for (const auto& [text, domains] : cases) EXPECT_EQ(SafariSiteFilter::parse(text).domains, domains) << text;
}

TEST(SafariSiteFilter, takesInWhatLiesBelowASite) {
  const struct {
    const char* sites;
    const char* host;
    bool matches;
  } cases[] = {
      {"", "anything", true},
      {"example.com", ".Example.COM", true},
      {"example.com", "a.b.example.com", true},
      {"example.com", "badexample.com", false},
      {"a.example.com", "example.com", false},
      {"other.org example.com", "a.example.com", true},
      {"example.com", "", false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(SafariSiteFilter::parse(c.sites).matches(c.host), c.matches) << c.sites << " " << c.host;
  }
}

TEST(SafariImportGap, comparesCookiesByKeyAndValue) {
  const std::vector<HttpCookie> stored = {
      {.name = "same", .value = "old", .domain = "a.com"},
      {.name = "same", .value = "1", .domain = ".A.com"},
      {.name = "other", .value = "1", .domain = "a.com"},
      {.name = "case", .value = "1", .domain = "a.com"},
  };
  const SafariData data = {
      {},
      {cookie(".A.COM", "same", "1"), cookie("a.com", "other", "2"), cookie("a.com", "Case", "3"),
       cookie("b.a.com", "same", "4"), cookie("a.com", "late", "expired", kNow),
       cookie("b.com", "same", "elsewhere"), cookie("a.com", "other", "5"), cookie("a.com", "Case", "6")},
      {}};
  const auto gap =
      SafariImportGap::compute(data, SafariSiteFilter::parse("a.com"), valuesByKey(stored), {}, kNow);
  EXPECT_EQ(valuesOf(gap.missingCookies), (std::vector<std::string>{"3", "4", "6"}));
  EXPECT_EQ(valuesOf(gap.changedCookies), (std::vector<std::string>{"2", "5"}));
  EXPECT_EQ(gap.cookiesInSync, 1);
  const auto everything = SafariImportGap::compute(data, {}, valuesByKey(stored), {}, kNow);
  EXPECT_EQ(everything.missingCookies.size(), 4);
}

TEST(SafariImportGap, comparesVisitsByWholeSecond) {
  const std::vector<HistoryEntry> imported = {
      {"http://a/", "A", {100}}, {"http://b/", "B", {-5}}, {"http://z/", "not among Safari's", {7}}};
  const std::vector<HistoryEntry> missing = {{"http://a/", "A", {101}},     {"http://c/", "twice", {9.2}},
                                             {"http://c/", "twice", {9.7}}, {"http://a", "A", {100}},
                                             {"http://f/", "far", {1e300}}, {"http://f/", "far", {-1e300}}};
  SafariData data;
  data.history = missing;
  data.history.insert(data.history.begin() + 1, {"http://a/", "another title", {100.9}});
  data.history.push_back({"http://b/", "B", {-5.5}});
  const auto gap = SafariImportGap::compute(data, SafariSiteFilter::parse("elsewhere"), {}, imported, kNow);
  EXPECT_EQ(gap.missingVisits, missing);
  EXPECT_EQ(gap.visitsInSync, 2);
  const auto again = SafariImportGap::compute(data, {}, {}, data.history, kNow);
  EXPECT_EQ(again.missingVisits.size(), 0);
  EXPECT_FALSE(again.hasSomethingToDo());
}

TEST(SafariImportTexts, tellTheGapInThreeLines) {
  SafariImportGap first;
  first.missingCookies.resize(1234);
  first.missingVisits.resize(1'000'000);
  SafariImportGap later;
  later.changedCookies.resize(2);
  later.cookiesInSync = 3;
  later.visitsInSync = 4;
  const auto sites = SafariSiteFilter::parse("a.com,b.org");
  const LocalizedFormat english("en_US", "Europe/Paris");
  EXPECT_EQ(
      importStatusText(first, {}, {}, english),
      "Sign-ins: 1,234 cookies for every site. 1,234 missing in Velto, 0 changed since the last import.\n"
      "History: 1,000,000 visits, 1,000,000 not imported yet.\nRead from Safari just now.");
  EXPECT_EQ(importStatusText(later, {WallTime{1704164645}}, sites, english),  // 2024-01-02T03:04:05Z
            "Sign-ins: 5 cookies for a.com, b.org. 0 missing in Velto, 2 changed since the last import.\n"
            "History: 4 visits, all imported.\n"
            "Read from the snapshot `velto import-safari` took at 4:04\u202FAM.");
  const LocalizedFormat german("de_DE", "Europe/Berlin");
  EXPECT_EQ(german.number(1234567) + " " + german.shortTime({1704164645}), "1.234.567 04:04");
  EXPECT_EQ(LocalizedFormat("en_US_POSIX").number(1234567), "1,234,567");
}

}  // namespace
}  // namespace velto
