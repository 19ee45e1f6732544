#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "layouts/LayoutSlug.h"

namespace velto {
namespace {

TEST(LayoutSlugTests, NameGivesSlug) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"Crème brûlée!", "creme-brulee"},
      {"Cafe\u0301", "cafe"},
      {"Straße ẞ", "strasse-ss"},
      {"ﬁ ŉ ſ \u212a \u212b", "fi-n-s-k-a"},
      {"İstanbul ırmak", "istanbul-rmak"},
      {"Łódź Ørsted æ", "odz-rsted"},
      {"日本語", ""},
      {"Ａ１①½²٣", ""},
      {"x\u0338y ≠", "xy"},
      {"a\u200db", "b"},
      {"1\ufe0f\u20e3 go", "1-go"},
      {"  --A--  ", "a"},
      {"a\r\nb\tc_d", "a-b-c-d"},
      {std::string("a\0b\xff", 4) + "c\xe2\x82", "a-b-c"},
      {std::string(80, 'A'), std::string(60, 'a')},
      {std::string(59, 'a') + " bc", std::string(59, 'a')},
      {std::string(58, 'a') + " bc", std::string(58, 'a') + "-b"},
  };
  for (const auto& [name, slug] : cases) EXPECT_EQ(layoutSlug(name), slug) << name;
}

TEST(LayoutSlugTests, WordsOfTheCommandAndPorts) {
  for (const char* word : {"", "0", "3000", "½", "٣", "三", "1\ufe0f\u20e3"})
    EXPECT_TRUE(isPortLike(word)) << word;
  for (const char* word : {"a", "3000a", "-1", "3.5", " 1"}) EXPECT_FALSE(isPortLike(word)) << word;
  for (const char* word : {"layouts", "import-safari", "localhost"}) EXPECT_TRUE(isReserved(word)) << word;
  for (const char* word : {"", "Layouts", "layout-2"}) EXPECT_FALSE(isReserved(word)) << word;
}

using Rows = std::vector<std::tuple<std::string, double, std::string>>;

/// Rows of name, age and expected word. The layouts get the ids "0", "1" and so on.
void expectTable(const Rows& rows) {
  std::vector<Layout> layouts;
  std::vector<std::string> expected;
  for (const auto& [name, createdAt, slug] : rows) {
    Layout& layout = layouts.emplace_back();
    layout.id = std::to_string(expected.size());
    layout.name = name;
    layout.createdAt = {createdAt};
    expected.push_back(slug);
  }
  EXPECT_EQ(slugsOf(layouts), expected);
}

TEST(LayoutSlugTests, TableTellsLayoutsApart) {
  expectTable({{"Focus", 20, "focus-2"}, {"focus!", 10, "focus"}, {"Other", 0, "other"}});
  expectTable({{"Focus", 10, "focus"}, {"Focus", 10, "focus-2"}});  // one moment: by id
  expectTable({{"Layouts", 0, "layouts-layout"}, {"3000", 0, "3000-layout"}, {"Open", 0, "open-layout"}});
  expectTable({{"---", 0, "layout-2"}, {"日本", 1, "layout-3"}, {"layout", 2, "layout-layout"}});
  expectTable({{"Focus", 0, "focus"}, {"Focus", 1, "focus-3"}, {"focus 2", 2, "focus-2"}});
  expectTable({{"Layouts", 1, "layouts-layout-2"}, {"Layouts layout", 2, "layouts-layout"}});
  expectTable({{"3000", 1, "3000-layout"}, {"3000", 2, "3000-layout-2"}});
  expectTable({{std::string(60, 'a'), 1, std::string(60, 'a')},
               {std::string(61, 'a'), 2, std::string(60, 'a') + "-2"}});
}

TEST(LayoutSlugTests, LayoutsWithOneIdHaveTheirOwnWords) {
  std::vector<Layout> layouts;
  for (const char* name : {"Two", "One", "one"}) {
    layouts.emplace_back().id = "same";
    layouts.back().name = name;
  }
  EXPECT_EQ(slugsOf(layouts), (std::vector<std::string>{"two", "one", "one-2"}));
  EXPECT_EQ(slugTable(layouts), (std::map<std::string, std::string>{{"same", "two"}}));
}

TEST(LayoutSlugTests, ManyLayoutsOfOneName) {
  std::vector<Layout> layouts(10'000);
  for (std::size_t i = 0; i < layouts.size(); ++i) {
    layouts[i].createdAt = {static_cast<double>(i)};
    layouts[i].name = "Same";
  }
  EXPECT_EQ(slugsOf(layouts).back(), "same-10000");
}

TEST(LayoutSlugTests, ExplainsAnotherWord) {
  EXPECT_EQ(slugExplanation("Focus!", "focus"), std::nullopt);
  EXPECT_EQ(slugExplanation("Focus", "focus-2"),
            "Another layout already answers to “focus”, so this one's command is “focus-2”.");
  EXPECT_EQ(slugExplanation("3000", "3000-layout"),
            "“3000” would be read as a port number, so this layout's command is “3000-layout”.");
  EXPECT_EQ(slugExplanation("Open", "open-layout"),
            "“open” is a word the velto command already uses, so this layout's command is “open-layout”.");
  EXPECT_EQ(slugExplanation("---", "layout-2"),
            "“” is a word the velto command already uses, so this layout's command is “layout-2”.");
}

}  // namespace
}  // namespace velto
