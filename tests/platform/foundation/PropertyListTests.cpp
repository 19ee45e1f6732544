#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "platform/foundation/PropertyList.h"

namespace velto {
namespace {

using namespace std::string_literals;
using Array = PropertyList::Array;
using Data = PropertyList::Data;
using Dictionary = PropertyList::Dictionary;

const double kInfinity = std::numeric_limits<double>::infinity();

std::optional<PropertyList> readElement(const std::string& element) {
  return readPropertyList("<plist version=\"1.0\">" + element + "</plist>");
}

TEST(PropertyList, ReadsNumbersOutOfOtherTypes) {
  const std::pair<PropertyList, std::optional<std::int64_t>> cases[] = {
      {true, 1},
      {2.0, 2},
      {-9223372036854775808.0, std::numeric_limits<std::int64_t>::min()},
      {"42", 42},
      {0.5, std::nullopt},
      {9223372036854775808.0, std::nullopt},
      {std::nan(""), std::nullopt},
      {"42 ", std::nullopt},
      {Dictionary{}, std::nullopt},
  };
  for (const auto& [value, expected] : cases) EXPECT_EQ(value.asInteger(), expected);
  EXPECT_EQ(PropertyList("1.5").asDouble(), 1.5);
  EXPECT_EQ(PropertyList(3).asDouble(), 3.0);
  EXPECT_EQ(PropertyList(-0.0).asBool(), false);
  EXPECT_EQ(PropertyList(-1).asBool(), std::nullopt);
}

TEST(PropertyListXml, WritesTheUsualForm) {
  const PropertyList value =
      Dictionary{{"b", true},
                 {"a", Dictionary{{"<k>", "<\"&'>"}, {"none", Array{}}, {"empty", Dictionary{}}}},
                 {"c", Array{1, -2, 0.1, 1.0, WallTime{1704164645.9}, ""}},
                 {"d", Data{1, 2, 3, 4}}};
  EXPECT_EQ(writePropertyList(value), R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>a</key>
	<dict>
		<key>&lt;k&gt;</key>
		<string>&lt;"&amp;'&gt;</string>
		<key>empty</key>
		<dict/>
		<key>none</key>
		<array/>
	</dict>
	<key>b</key>
	<true/>
	<key>c</key>
	<array>
		<integer>1</integer>
		<integer>-2</integer>
		<real>0.10000000000000001</real>
		<real>1</real>
		<date>2024-01-02T03:04:05Z</date>
		<string></string>
	</array>
	<key>d</key>
	<data>
	AQIDBA==
	</data>
</dict>
</plist>
)");
}

TEST(PropertyListXml, EverythingReadsBackAsItself) {
  Data bytes;
  for (int i = 0; i < 300; ++i) bytes.push_back(static_cast<std::uint8_t>(i * 7));
  const PropertyList value = Dictionary{
      {"", std::numeric_limits<std::int64_t>::min()},
      {"integer", std::numeric_limits<std::int64_t>::max()},
      {"real", Array{0.1, 1.0, -0.0, 5e-324, 1.7976931348623157e308, kInfinity, -kInfinity}},
      {"text", Array{"", " a\tb\n\r\n ", "]]>", "é😀\u2028", "&amp;", "<![CDATA["}},
      {"data", Array{Data{}, Data{0}, Data{0, 255}, bytes, Dictionary{{"deeper", bytes}}}},
      {"flags", Array{true, false}},
      {"date", WallTime{-62135769600}},
  };
  EXPECT_EQ(readPropertyList(writePropertyList(value)), value);
  EXPECT_TRUE(std::isnan(*readPropertyList(writePropertyList(std::nan("")))->as<double>()));
}

TEST(PropertyListXml, WhatXmlCannotHoldStaysReadable) {
  const PropertyList text = "a\0b\x01\x1f\xff\xed\xa0\x80\uffff"s;
  EXPECT_EQ(readPropertyList(writePropertyList(text)),
            PropertyList("a\ufffd"
                         "b\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd"));
  EXPECT_TRUE(readPropertyList(writePropertyList(Dictionary{{"\0"s, 1}, {"\x01"s, 2}})));
  for (const double date : {1e300, -1e300, kInfinity, std::nan("")}) {
    EXPECT_TRUE(readPropertyList(writePropertyList(WallTime{date})));
  }
}

TEST(PropertyListXml, ReadsWhatOthersWrite) {
  const std::pair<const char*, PropertyList> cases[] = {
      {"<string> x </string>", " x "},
      {"<string>a<!-- c -->b<![CDATA[<&]]></string>", "ab<&"},
      {"<string>&#233;&lt;</string>", "é<"},
      {"<integer>0x1F</integer>", 31},
      {"<integer>+5</integer>", 5},
      {"<integer>18446744073709551615</integer>", 18446744073709551615.0},
      {"<real>-Infinity</real>", -kInfinity},
      {"<real>1e3</real>", 1000.0},
      {"<data>\n\tAQ ID\n\t</data>", Data{1, 2, 3}},
      {"<data>AQ=</data>", Data{}},
      {"<array><!-- c --><true/> <false></false></array>", Array{true, false}},
      {"<dict><key>a</key><true/><key>a</key><integer>2</integer></dict>", Dictionary{{"a", 2}}},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(readElement(text), expected) << text;
  EXPECT_EQ(readPropertyList("<string>bare</string>"), PropertyList("bare"));
}

TEST(PropertyListXml, RefusesEverythingElse) {
  for (const char* element :
       {"", "text", "<bool>1</bool>", "<dict><key>a</key></dict>", "<dict><true/></dict>",
        "<integer>5 </integer>", "<integer>5.5</integer>", "<integer></integer>", "<integer>0x-5</integer>",
        "<integer>99999999999999999999</integer>", "<integer><true/></integer>", "<real>x</real>",
        "<real>nan </real>", "<date>2024-01-02</date>", "<date>2024-01-02T03:04:05+00:00</date>",
        // Of the form itself.
        "<true/><true/>", "<array>", "<string>&x;</string>", "<string>\x01</string>",
        "<string>\xff</string>"}) {
    EXPECT_FALSE(readElement(element)) << element;
  }
  for (const char* text :
       {"", " ", "word", "{a=1;}", "{\"a\":1}", "<plist/>", "<html/>", "bplist00", "bplist0"}) {
    EXPECT_FALSE(readPropertyList(text)) << text;
  }
}

TEST(PropertyListXml, SurvivesBombs) {
  const auto repeated = [](const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += text;
    return all;
  };
  EXPECT_FALSE(readPropertyList(repeated("<array>", 1000000)));
  const auto nested = [&](int depth) {
    return repeated("<array>", depth) + "<true/>" + repeated("</array>", depth);
  };
  EXPECT_TRUE(readPropertyList(nested(127)));
  EXPECT_FALSE(readPropertyList(nested(128)));
  EXPECT_FALSE(
      readPropertyList("<!DOCTYPE plist [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]><string>&b;</string>"));
  EXPECT_FALSE(
      readPropertyList("<!DOCTYPE plist [<!ENTITY f SYSTEM \"file:///etc/passwd\">]><string>&f;</string>"));
}

/// The binary form with one byte for each offset and reference; the first object is the outermost.
std::string binary(const std::vector<std::string>& objects) {
  std::string out = "bplist00";
  std::string offsets;
  for (const std::string& object : objects) {
    offsets += static_cast<char>(out.size());
    out += object;
  }
  const std::size_t table = out.size();
  const auto eightBytes = [](std::size_t value) { return std::string(7, '\0') + static_cast<char>(value); };
  return out + offsets + std::string(6, '\0') + "\x01\x01" + eightBytes(objects.size()) + eightBytes(0) +
         eightBytes(table);
}

TEST(PropertyListBinary, ReadsEveryType) {
  const std::pair<std::string, PropertyList> cases[] = {
      {"\x08"s, false},
      {"\x09"s, true},
      {"\x10\xff"s, 255},
      {"\x11\xff\xff"s, 65535},
      {"\x13\xff\xff\xff\xff\xff\xff\xff\xff"s, -1},
      {"\x14\0\0\0\0\0\0\0\0\xff\xff\xff\xff\xff\xff\xff\xff"s, 18446744073709551615.0},
      {"\x14\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xfe"s, -2},
      {"\x22\x3f\x80\0\0"s, 1.0},
      {"\x23\x3f\xe0\0\0\0\0\0\0"s, 0.5},
      {"\x33\0\0\0\0\0\0\0\0"s, WallTime{978307200}},
      {"\x42\x01\x02"s, Data{1, 2}},
      {"\x53"
       "abc"s,
       "abc"},
      {"\x5f\x10\x03"
       "abc"s,
       "abc"},
      {"\x63\0\xe9\xd8\x3d\xde\0"s, "é😀"},
      {"\x61\xd8\x3d"s, "\ufffd"},
      {"\xa0"s, Array{}},
      {"\xd0"s, Dictionary{}},
  };
  for (const auto& [object, expected] : cases) EXPECT_EQ(readPropertyList(binary({object})), expected);
  EXPECT_EQ(readPropertyList(binary({"\xd1\x01\x02"s, "\x51k"s, "\xa2\x01\x01"s})),
            PropertyList(Dictionary{{"k", Array{"k", "k"}}}));
}

TEST(PropertyListBinary, RefusesWhatIsMalformed) {
  const std::string cases[] = {
      binary({"\x00"s}),                   // null
      binary({"\x80\x01"s}),               // an archive's reference
      binary({"\xa1\x00"s}),               // itself in itself
      binary({"\xa1\x01"s, "\xa1\x00"s}),  // a circle
      binary({"\xa1\x05"s}),               // no such object
      binary({"\xd1\x01\x01"s, "\x09"s}),  // a key that is no text
      binary({"\x5f\x13\xff\xff\xff\xff\xff\xff\xff\xff"s}),
      binary({"\xaf\x13\x7f\xff\xff\xff\xff\xff\xff\xff"s}),
      binary({"\x6f\x13\x80\0\0\0\0\0\0\x01"s}),
      binary({"\x15"s}),
      binary({}),
  };
  for (const std::string& bytes : cases) EXPECT_FALSE(readPropertyList(bytes));
  const std::string whole = binary({"\xd1\x01\x02"s, "\x51k"s, "\x10\x05"s});
  ASSERT_TRUE(readPropertyList(whole));
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_FALSE(readPropertyList(whole.substr(0, length))) << length;
  }
}

TEST(PropertyListBinary, SurvivesUnfolding) {
  std::vector<std::string> doubling;
  for (int i = 0; i < 60; ++i) {
    const auto next = static_cast<char>(i + 1);
    doubling.push_back("\xa2"s + next + next);
  }
  doubling.push_back("\x09"s);
  EXPECT_FALSE(readPropertyList(binary(doubling)));
}

}  // namespace
}  // namespace velto
