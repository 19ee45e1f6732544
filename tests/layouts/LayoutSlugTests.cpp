#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "layouts/LayoutSlug.h"
#include "platform/foundation/Characters.h"

namespace velto {
namespace {

TEST(LayoutSlugTests, NameGivesSlug) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"Morning dashboards", "morning-dashboards"},
      {"Crème brûlée!", "creme-brulee"},
      {"Cafe\u0301", "cafe"},
      {"Straße ẞ", "strasse-ss"},
      {"ﬁ ŉ ſ \u212a \u212b", "fi-n-s-k-a"},
      {"İstanbul ırmak", "istanbul-rmak"},
      {"Łódź Ørsted æ", "odz-rsted"},
      {"Привет A", "a"},
      {"日本語", ""},
      {"が1", "1"},
      {"Ａ１①½²٣", ""},
      {"x\u0338y ≠", "xy"},
      {"a\u200db", "b"},
      {"\u0600a b", "b"},
      {"1\ufe0f\u20e3 go", "1-go"},
      {"A / B", "a-b"},
      {"  --A--  ", "a"},
      {"a\r\nb\tc_d", "a-b-c-d"},
      {"---", ""},
      {"", ""},
      {"3000", "3000"},
      {std::string("a\0b\xff", 4) + "c\xe2\x82", "a-b-c"},
      {std::string(80, 'A'), std::string(60, 'a')},
      {std::string(59, 'a') + " bc", std::string(59, 'a')},
      {std::string(58, 'a') + " bc", std::string(58, 'a') + "-b"},
      {std::string(60, 'a') + " ", std::string(60, 'a')},
  };
  for (const auto& [name, slug] : cases) EXPECT_EQ(layoutSlug(name), slug) << name;
}

TEST(LayoutSlugTests, FoldingKeepsMarksOfOtherScripts) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"ά ᾼ Σς", "α α σσ"}, {"йЁ Ґ", "ие ґ"},       {"Ⅳ ⅓ Ａ", "ⅳ ⅓ ａ"},   {"か\u3099 ｶﾞ", "か\u3099 ｶﾞ"},
      {"\u0958", "\u0958"}, {"\u0301a", "\u0301a"}, {"❤\ufe0f", "❤\ufe0f"}, {"a\u0301\u0323", "a"},
  };
  for (const auto& [text, folded] : cases) EXPECT_EQ(foldCaseAndMarks(text), folded) << text;
}

TEST(LayoutSlugTests, CharactersAreWhatAReaderCounts) {
  const std::vector<std::pair<std::string, std::vector<std::string_view>>> cases = {
      {"", {}},
      {"a\r\nb\n", {"a", "\r\n", "b", "\n"}},
      {"e\u0301x", {"e\u0301", "x"}},
      {"👨‍👩‍👧🇫🇷🇩🇪", {"👨‍👩‍👧", "🇫🇷", "🇩🇪"}},
      {"\xffx", {"\xff", "x"}},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(characters(text), expected) << text;
}

TEST(LayoutSlugTests, WordsOfTheCommandAndPorts) {
  for (const char* word : {"", "0", "3000", "½", "٣", "三", "1\ufe0f\u20e3"})
    EXPECT_TRUE(isPortLike(word)) << word;
  for (const char* word : {"a", "3000a", "-1", "3.5", " 1"}) EXPECT_FALSE(isPortLike(word)) << word;
  for (const char* word : {"layouts", "import-safari", "localhost"}) EXPECT_TRUE(isReserved(word)) << word;
  for (const char* word : {"", "Layouts", "layout-2"}) EXPECT_FALSE(isReserved(word)) << word;
}

struct Named {
  std::string name;
  double createdAt;
  std::string slug;
};

/// The layouts get the ids "0", "1" and so on, in the order of the table.
void expectTable(const std::vector<Named>& rows) {
  std::vector<Layout> layouts;
  std::map<std::string, std::string> expected;
  for (const Named& row : rows) {
    Layout layout;
    layout.id = std::to_string(layouts.size());
    layout.name = row.name;
    layout.createdAt = {row.createdAt};
    expected[layout.id] = row.slug;
    layouts.push_back(layout);
  }
  EXPECT_EQ(slugTable(layouts), expected) << rows.front().name;
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
  std::vector<Layout> layouts(3);
  const char* names[] = {"Two", "One", "one"};
  for (std::size_t i = 0; i < layouts.size(); ++i) {
    layouts[i].id = "same";
    layouts[i].name = names[i];
  }
  EXPECT_EQ(slugsOf(layouts), (std::vector<std::string>{"two", "one", "one-2"}));
  EXPECT_EQ(slugTable(layouts), (std::map<std::string, std::string>{{"same", "two"}}));
}

TEST(LayoutSlugTests, ManyLayoutsOfOneName) {
  std::vector<Layout> layouts(10'000);
  for (std::size_t i = 0; i < layouts.size(); ++i) {
    layouts[i].id = std::to_string(i);
    layouts[i].createdAt = {static_cast<double>(i)};
    layouts[i].name = "Same";
  }
  const auto table = slugTable(layouts);
  EXPECT_EQ(table.at("0"), "same");
  EXPECT_EQ(table.at("9999"), "same-10000");
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
