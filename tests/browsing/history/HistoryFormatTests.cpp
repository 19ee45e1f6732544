#include <algorithm>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "browsing/history/HistoryFormat.h"

namespace velto {
namespace {

using Step = HistoryScanner::Step;

const std::vector<HistoryEntry> kEntries = {
    {"https://a.example/b?c=1", "\"A\" \\ / é \b\f\n\r\t \x1f\x01 \x7f", {1709251199}},
    {"https://b.example/", "", {0}},
};
constexpr std::string_view kPretty = R"([
  {
    "url" : "https://a.example/b?c=1",
    "title" : "\"A\" \\ / é \b\f\n\r\t \u001f\u0001 )"
                                     "\x7f"
                                     R"(",
    "timestamp" : "2024-02-29T23:59:59Z"
  },
  {
    "url" : "https://b.example/",
    "title" : "",
    "timestamp" : "1970-01-01T00:00:00Z"
  }
])";
constexpr std::string_view kCompact =
    R"([{"url":"https://a.example/b?c=1","title":"\"A\" \\ / é \b\f\n\r\t \u001f\u0001 )"
    "\x7f"
    R"(","timestamp":"2024-02-29T23:59:59Z"},)"
    R"({"url":"https://b.example/","title":"","timestamp":"1970-01-01T00:00:00Z"}])";

/// The step that ends a walk through the text, which comes in parts of so many bytes more.
Step walk(std::string_view text, HistoryForm form, std::vector<HistoryEntry>& entries,
          std::size_t growth = 1000) {
  HistoryScanner scanner(form);
  Step step = Step::cutOff;
  std::size_t start = 0;
  for (std::size_t end = 0; step == Step::cutOff && end < text.size();) {
    end = std::min(end + growth, text.size());
    start += scanner.position();
    scanner.more(text.substr(start, end - start));
    while ((step = scanner.next()) == Step::entry) entries.push_back(readEntry(scanner.entry()));
  }
  return step;
}

TEST(HistoryFormat, writesOneFormAndReadsItBackInParts) {
  for (const auto& [form, text, empty] : {std::tuple(HistoryForm::pretty, kPretty, "[\n\n]"),
                                          std::tuple(HistoryForm::compact, kCompact, "[]")}) {
    EXPECT_EQ(encodeHistory(kEntries, form), text);
    EXPECT_EQ(encodeHistory({}, form), empty);
    EXPECT_EQ(decodeHistory(text), kEntries);
    EXPECT_TRUE(text.ends_with(historyEnding(form)));
    for (std::size_t growth = 1; growth <= text.size(); ++growth) {
      std::vector<HistoryEntry> entries;
      EXPECT_EQ(walk(text, form, entries, growth), Step::end) << growth;
      EXPECT_EQ(entries, kEntries) << growth;
    }
    for (std::size_t length = 0; length < text.size(); ++length) {
      std::vector<HistoryEntry> entries;
      EXPECT_EQ(walk(text.substr(0, length), form, entries), Step::cutOff) << length;
    }
  }
}

TEST(HistoryFormat, everyOtherWayToWriteItIsForeign) {
  const struct {
    const char* old;
    const char* by;
  } changes[] = {
      {"https:", "https\\:"},
      {"https://a", "https:\\/\\/a"},
      {"\\u001f", "\\u001F"},
      {"\\u001f", "\\u0020"},
      {"\\u001f", "\\u000a"},
      {"\\u001f", "\\u101f"},
      {"\\t", "\t"},
      {"é", "\\u00e9"},
      {"\"url\"", "\"uRl\""},
      {"2024-02-29", "2024-02-30"},
      {"2024-02-29", "1582-10-10"},
      {"2024-02-29", "12024-02-9"},
      {"T23:", "T24:"},
      {"1970-01-01T", "1970-01-01 "},
      {"59:59Z", "60:59Z"},
      {"59:59Z", "59:60Z"},
      {"59:59Z", "59:5aZ"},
      {"59:59Z", "59:59+00:00"},
      {"},", "} ,"},
      {"[", "\xef\xbb\xbf["},
  };
  for (const auto& change : changes) {
    for (const HistoryForm form : {HistoryForm::pretty, HistoryForm::compact}) {
      std::string text(form == HistoryForm::pretty ? kPretty : kCompact);
      const std::size_t at = text.find(change.old);
      ASSERT_NE(at, std::string::npos) << change.old;
      text.replace(at, std::string_view(change.old).size(), change.by);
      std::vector<HistoryEntry> entries;
      EXPECT_EQ(walk(text, form, entries), Step::foreign) << text;
    }
  }
  std::string nulInADate(kPretty);
  nulInADate.replace(nulInADate.find("1970-01-01T"), 11, std::string("1970-01-01\0", 11));
  for (const std::string& text : {std::string(kPretty) + "\n", std::string(kPretty) + "]", nulInADate,
                                  std::string(kCompact), std::string("[]"), std::string(30, '\0')}) {
    std::vector<HistoryEntry> entries;
    EXPECT_EQ(walk(text, HistoryForm::pretty, entries), Step::foreign) << text;
  }
}

TEST(HistoryFormat, whatWasWrittenCanBeRead) {
  const struct {
    double time;
    const char* text;
  } times[] = {{1704164645.999, "2024-01-02T03:04:05Z"}, {-0.5, "1969-12-31T23:59:59Z"},
               {1e15, "9999-12-31T23:59:59Z"},           {-1e15, "0000-01-01T00:00:00Z"},
               {-12219292801, "1582-10-04T23:59:59Z"},   {-12219292800, "1582-10-15T00:00:00Z"}};
  for (const auto& time : times) {
    const std::string text =
        encodeHistory(std::vector<HistoryEntry>{{"u", "\xff t", {time.time}}}, HistoryForm::pretty);
    EXPECT_NE(text.find(time.text), std::string::npos) << text;
    std::vector<HistoryEntry> entries;
    EXPECT_EQ(walk(text, HistoryForm::pretty, entries), Step::end) << text;
    EXPECT_EQ(decodeHistory(text), entries);
    EXPECT_EQ(entries.front().title, "\ufffd t");
  }
}

}  // namespace
}  // namespace velto
