#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "platform/foundation/JsonError.h"
#include "platform/foundation/JsonWriter.h"

namespace velto {
namespace {

std::string written(double number) {
  JsonWriter writer;
  writer.number(number);
  return writer.text();
}

std::string written(std::string_view text) {
  JsonWriter writer;
  writer.string(text);
  return writer.text();
}

TEST(JsonWriter, WritesTheShortestNumber) {
  const std::pair<double, const char*> cases[] = {
      {-0.0, "-0"},
      {1, "1"},
      {0.30000000000000004, "0.30000000000000004"},
      {1.0 / 3, "0.3333333333333333"},
      {0.00001, "1e-05"},
      {1.5e-7, "1.5e-07"},
      {5e-324, "5e-324"},
      {1234567890123456.7, "1234567890123456.8"},
      {9007199254740992, "9007199254740992"},
      {9007199254740994, "9.007199254740994e+15"},
      {-1e16, "-1e+16"},
      {std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
  };
  for (const auto& [number, text] : cases) EXPECT_EQ(written(number), text);
}

TEST(JsonWriter, RefusesWhatIsNoNumber) {
  for (const double number : {std::nan(""), HUGE_VAL, -HUGE_VAL}) EXPECT_THROW(written(number), JsonError);
}

TEST(JsonWriter, EscapesOnlyWhatItMust) {
  using namespace std::string_view_literals;
  EXPECT_EQ(written("\"\\\b\f\n\r\t"sv), R"("\"\\\b\f\n\r\t")");
  EXPECT_EQ(written("\0\x0b\x1f"sv), R"("\u0000\u000b\u001f")");
  EXPECT_EQ(written("/<>&'\x7f\u0080\u2028é😀"sv), "\"/<>&'\x7f\u0080\u2028é😀\"");
  EXPECT_EQ(written("a\xff\xe2\x82z"sv), "\"a\ufffd\ufffdz\"") << "what cannot be read is not written";
}

TEST(JsonWriter, LaysOutContainers) {
  JsonWriter writer;
  writer.beginObject();
  writer.key("a/\"");
  writer.beginObject();
  writer.endObject();
  writer.key("b");
  writer.beginArray();
  writer.beginArray();
  writer.endArray();
  writer.integer(std::numeric_limits<std::int64_t>::min());
  writer.boolean(true);
  writer.beginObject();
  writer.key("c");
  writer.boolean(false);
  writer.endObject();
  writer.endArray();
  writer.endObject();
  EXPECT_EQ(writer.text(), R"({
  "a/\"" : {

  },
  "b" : [
    [

    ],
    -9223372036854775808,
    true,
    {
      "c" : false
    }
  ]
})");
}

}  // namespace
}  // namespace velto
