#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "platform/foundation/Text.h"

namespace velto {
namespace {

using namespace std::string_literals;

TEST(Text, TrimsExactlyTheBlanks) {
  for (const char* blank : {"\t", " ", "\u00a0", "\u1680", "\u2000", "\u2001", "\u2006", "\u200a", "\u200b",
                            "\u202f", "\u205f", "\u3000"}) {
    const std::string text = blank + "a"s + blank + "b"s + blank;
    EXPECT_EQ(trimWhitespace(text), "a"s + blank + "b") << blank;
    EXPECT_EQ(trimWhitespaceAndNewlines(text), "a"s + blank + "b") << blank;
  }
  for (const char* lineEnd : {"\n", "\v", "\f", "\r", "\xc2\x85", "\u2028", "\u2029"}) {
    const std::string text = lineEnd + " a "s + lineEnd;
    EXPECT_EQ(trimWhitespace(text), text);
    EXPECT_EQ(trimWhitespaceAndNewlines(text), "a");
  }
  for (const char* kept : {"\ufeff", "\u180e", "\u200c", "\x1f", "\xa0", "\xe2\x80", "\u0301"}) {
    EXPECT_EQ(trimWhitespaceAndNewlines(kept), kept);
  }
  EXPECT_EQ(trimWhitespace(" \u0301a"), "\u0301a");
  EXPECT_EQ(trimWhitespace(" \t "), "");
}

TEST(Text, LowercasesWithoutLocaleOrContext) {
  const std::pair<const char*, const char*> cases[] = {
      {"ABCxyz-[@]ÉÑÅ", "abcxyz-[@]éñå"},
      {"ΑΣ", "ασ"},
      {"İ", "i\u0307"},
      {"ẞ", "ß"},
      {"ꭰǅ𐐀", "ꭰǆ𐐨"},
      {"A\xff"
       "B\xe2\x82",
       "a\ufffd"
       "b\ufffd"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(lowercased(text), expected);
}

TEST(Text, ReadsIntegers) {
  const std::pair<const char*, std::int64_t> cases[] = {
      {"+3", 3},
      {"-0", 0},
      {"007", 7},
      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
      {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
      {"0000000000000000000000000000012", 12},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(parseInteger(text), expected) << text;
  for (const char* text : {"", "-", " 3", "3\n", "３", "٣", "1_000", "0x10", "3.0", "1e3", "+-3",
                           "9223372036854775808", "-9223372036854775809"}) {
    EXPECT_FALSE(parseInteger(text)) << text;
  }
  EXPECT_FALSE(parseInteger("3\0"s));
}

TEST(Text, ReadsDecimals) {
  const double infinity = std::numeric_limits<double>::infinity();
  const std::pair<const char*, double> cases[] = {
      {"1", 1},
      {"-.5", -0.5},
      {"5.", 5},
      {"1e3", 1000},
      {"1E+3", 1000},
      {"1e400", infinity},
      {"-1e400", -infinity},
      {"1e99999999999999999999", infinity},
      {"12.5e-1", 1.25},
      {"5e-324", 5e-324},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(parseDouble(text), expected) << text;
  EXPECT_TRUE(std::signbit(*parseDouble("-0")));
  for (const char* text : {"", ".", "-.", "1e", "e3", "1e+", " 1", "1\n", "1_0", "1,0", "１", "1f", "0x10",
                           "inf", "nan", "1.2.3", "++1"}) {
    EXPECT_FALSE(parseDouble(text)) << text;
  }
}

TEST(Text, RepairsEachMaximalIllFormedRun) {
  const std::pair<std::string, int> cases[] = {
      {"\x80", 1},
      {"\xc0\x80", 2},
      {"\xe2\x82", 1},
      {"\xf0\x9f\x98", 1},
      {"\xe0\x80\x80", 3},
      {"\xed\xa0\x80", 3},
      {"\xf4\x90\x80\x80", 4},
      {"\xf8\x88\x80\x80\x80", 5},
      {"\xed\xa0\x80\xed\xb0\x80", 6},
  };
  for (const auto& [bytes, count] : cases) {
    std::string expected;
    for (int i = 0; i < count; ++i) expected += "\ufffd";
    EXPECT_EQ(repairUtf8(bytes), expected);
    EXPECT_FALSE(isValidUtf8(bytes));
  }
  EXPECT_EQ(repairUtf8("\xe2\x82\x41"), "\ufffdA");
  EXPECT_EQ(repairUtf8("\xf1\x80\xff\x41"), "\ufffd\ufffdA");
  for (const std::string& fine : {"\ufeffé😀"s, "\0"s, "\U0010ffff"s, "\ud7ff\ue000"s}) {
    EXPECT_EQ(repairUtf8(fine), fine);
    EXPECT_TRUE(isValidUtf8(fine));
  }
}

TEST(Text, EscapesHtml) { EXPECT_EQ(escapeHtml("&lt;<a b=\"'\">"), "&amp;lt;&lt;a b=&quot;'&quot;&gt;"); }

}  // namespace
}  // namespace velto
