#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/foundation/JsonRecord.h"

namespace velto {

struct TestRecord {
  std::int64_t whole = 0;
  double number = 0;
  std::string text;
  bool flag = false;
  std::optional<double> maybe;
  std::vector<std::int64_t> list;
};

template <>
struct JsonFields<TestRecord> {
  static constexpr std::array kFields = {
      jsonField<&TestRecord::whole>("whole"), jsonField<&TestRecord::number>("number"),
      jsonField<&TestRecord::text>("text"),   jsonField<&TestRecord::flag>("flag"),
      jsonField<&TestRecord::maybe>("maybe"), jsonField<&TestRecord::list>("list"),
  };
};

namespace {

using Kind = JsonError::Kind;

TestRecord read(const std::string& text) {
  JsonParser parser;
  return decodeJson<TestRecord>(parser.parse(text));
}

std::optional<Kind> failure(const std::string& text) {
  try {
    read(text);
  } catch (const JsonError& error) {
    return error.kind();
  }
  return std::nullopt;
}

/// A whole record in which one member is replaced, or left out when its text is empty.
std::string recordWith(std::string_view key, const std::string& value) {
  std::string text;
  for (const auto& [name, usual] :
       {std::pair("list", "[]"), {"flag", "true"}, {"whole", "1"}, {"number", "2"}, {"text", "\"\""}}) {
    const std::string written = name == key ? value : usual;
    if (!written.empty()) text += std::string(text.empty() ? "{" : ",") + '"' + name + "\":" + written;
  }
  if (key == "maybe") text += ",\"maybe\":" + value;
  return text + '}';
}

TEST(JsonRecord, WholeNumbersMayBeWrittenAsOthers) {
  const std::pair<const char*, std::int64_t> cases[] = {{"-0", 0},
                                                        {"1.0", 1},
                                                        {"10e-1", 1},
                                                        {"1e5", 100000},
                                                        {"-9223372036854775808", INT64_MIN},
                                                        {"9223372036854775807", INT64_MAX}};
  for (const auto& [text, value] : cases) EXPECT_EQ(read(recordWith("whole", text)).whole, value) << text;
  EXPECT_EQ(read(recordWith("number", "9223372036854775808")).number, 9223372036854775808.0);
  EXPECT_EQ(read(recordWith("number", "7")).number, 7);
}

TEST(JsonRecord, TakesNoOtherType) {
  const struct {
    const char* key;
    const char* value;
    Kind kind;
  } cases[] = {
      {"whole", "1.5", Kind::malformed},   {"whole", "9223372036854775808", Kind::malformed},
      {"whole", "1e19", Kind::malformed},  {"whole", "true", Kind::malformed},
      {"whole", "\"1\"", Kind::malformed}, {"whole", "null", Kind::missing},
      {"whole", "", Kind::missing},        {"number", "1e400", Kind::malformed},
      {"number", "[]", Kind::malformed},   {"text", "1", Kind::malformed},
      {"flag", "1", Kind::malformed},      {"flag", "null", Kind::malformed},
      {"flag", "", Kind::missing},         {"maybe", "\"1\"", Kind::malformed},
      {"list", "{}", Kind::malformed},     {"list", "[1,\"2\"]", Kind::malformed},
      {"list", "[1,null]", Kind::missing}, {"list", "null", Kind::missing},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(failure(recordWith(each.key, each.value)), each.kind) << each.key << ' ' << each.value;
  }
  EXPECT_EQ(failure("[]"), Kind::malformed);
  EXPECT_EQ(failure("null"), Kind::missing);
  EXPECT_EQ(failure(""), Kind::malformed);
}

TEST(JsonRecord, TellsTheFirstFaultInTheOrderOfTheFields) {
  EXPECT_EQ(failure(R"({"flag":0,"number":null,"whole":1})"), Kind::missing);
  EXPECT_EQ(failure(R"({"text":null,"number":[],"whole":1})"), Kind::malformed);
}

TEST(JsonRecord, IgnoresWhatItDoesNotKnowAndLaterTwins) {
  const TestRecord record = read(
      R"({"whole":1,"":[{"whole":9}],"Whole":8,"whole":2,"whole":"x","text":"a","text":"b","number":3,
          "maybe":null,"maybe":4,"flag":true,"list":[5,6],"list":[]})");
  EXPECT_EQ(record.whole, 1);
  EXPECT_EQ(record.text, "a");
  EXPECT_EQ(record.maybe, std::nullopt);
  EXPECT_EQ(record.list, (std::vector<std::int64_t>{5, 6}));
}

TEST(JsonRecord, AParserForgetsTheTextBefore) {
  JsonParser parser;
  EXPECT_EQ(decodeJson<TestRecord>(parser.parse(recordWith("text", '"' + std::string(100000, 'a') + '"')))
                .text.size(),
            100000U);
  EXPECT_THROW(parser.parse("{"), JsonError);
  EXPECT_EQ(decodeJson<TestRecord>(parser.parse("\ufeff" + recordWith("text", "\"b\""))).text, "b");
}

}  // namespace
}  // namespace velto
