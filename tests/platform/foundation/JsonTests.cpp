#include <string>

#include <gtest/gtest.h>

#include "platform/foundation/Json.h"

namespace velto {
namespace {

template <class T>
T read(std::string_view text) {
  const auto value = readJson(text);
  const T* typed = value ? value->as<T>() : nullptr;
  if (typed == nullptr) throw std::invalid_argument(std::string(text));
  return *typed;
}

TEST(Json, KeepsTheKindOfNumbers) {
  EXPECT_EQ(read<std::int64_t>("1"), 1);
  EXPECT_EQ(read<std::int64_t>("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(read<double>("1.0"), 1.0);
  EXPECT_EQ(read<double>("1e2"), 100.0);
  EXPECT_EQ(read<double>("9223372036854775808"), 9223372036854775808.0);
  EXPECT_EQ(read<bool>("true"), true);
  EXPECT_TRUE(readJson("null")->isNull());
  EXPECT_EQ(read<std::string>(R"("\u0000\/\ud83d\ude00é")"), std::string("\0/😀é", 8));
}

TEST(Json, FirstOfEqualMembersCounts) {
  const auto value = readJson(R"({"a":1,"b":[{"c":null}],"a":2})");
  ASSERT_TRUE(value);
  EXPECT_EQ(*value->member("a")->as<std::int64_t>(), 1);
  EXPECT_TRUE((*value->member("b")->as<JsonValue::Array>())[0].member("c")->isNull());
  EXPECT_EQ(value->member("c"), nullptr);
  EXPECT_EQ(value->member("a")->member("a"), nullptr);
  EXPECT_EQ(value->as<JsonValue::Object>()->size(), 3U);
}

TEST(Json, RefusesWhatIsNotStrict) {
  for (const char* text :
       {"",        " ",           "{\"a\":1,}", "[1,2,]",   "{a:1}", "{'a':1}", "01",
        "+1",      ".5",          "1.",         "NaN",      "1 2",   "[1]x",    "// c\n1",
        "\"\\q\"", "\"\\ud800\"", "\"\n\"",     "\"\xff\"", "[",     "1e400",   "\xa0\x31"}) {
    EXPECT_FALSE(readJson(text)) << text;
  }
  EXPECT_FALSE(readJson(std::string_view("1\0", 2)));
}

TEST(Json, LimitsDepth) {
  const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
  EXPECT_TRUE(readJson(nested(512)));
  EXPECT_FALSE(readJson(nested(513)));
  EXPECT_FALSE(readJson(nested(100000)));
  EXPECT_FALSE(readJson(std::string(1000000, '[')));
}

}  // namespace
}  // namespace velto
