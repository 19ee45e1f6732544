#include <string>

#include <gtest/gtest.h>

#include "layouts/LayoutFormat.h"
#include "tests/layouts/LayoutTesting.h"

namespace velto {
namespace {

using test::golden;
using test::goldenLayout;
using test::makeLayout;
using test::replacing;

Layout read(const std::string& bytes) {
  JsonParser parser;
  return decodeLayout(parser, bytes);
}

std::string reason(const std::string& bytes) {
  try {
    read(bytes);
  } catch (const UnreadableLayout& unreadable) {
    return unreadable.what();
  }
  return {};
}

constexpr const char* kMalformed =
    "The file is not a readable layout (The data couldn’t be read because it isn’t in the correct format.)";
constexpr const char* kMissing =
    "The file is not a readable layout (The data couldn’t be read because it is missing.)";

TEST(LayoutFormat, KeepsItsBytes) {
  EXPECT_EQ(encodeJson(goldenLayout()), golden("layout.json"));
  EXPECT_EQ(encodeJson(makeLayout("a")), golden("empty-layout.json"));
  EXPECT_EQ(read(golden("layout.json")), goldenLayout());
  EXPECT_EQ(read(golden("empty-layout.json")), makeLayout("a"));
}

TEST(LayoutFormat, ReadsWhatOthersMayHaveWritten) {
  const std::string whole = golden("layout.json");
  const std::string falseFocus = replacing(whole, "\"noFocus\" : true", "\"noFocus\" : false");
  EXPECT_EQ(encodeJson(read(falseFocus)), falseFocus);
  const std::string noFocus = replacing(whole, "      \"noFocus\" : true,\n", "");
  EXPECT_EQ(encodeJson(read(noFocus)), noFocus);
  EXPECT_EQ(read(replacing(whole, "\"zoom\" : 1", "\"zoom\" : 1.25")).windows.front().zoom, 1.25);
  EXPECT_EQ(read(replacing(whole, "\"frame\" : {", "\"frame\" : { \"x\" : 1, \"y\" : 2,")), goldenLayout());
  const std::string extra = replacing(whole, "\"isMain\" : true,", "\"isMain\" : true, \"extra\" : {},");
  EXPECT_EQ(encodeJson(read(extra)), whole);
}

TEST(LayoutFormat, TellsWhyALayoutCannotBeRead) {
  const std::string whole = golden("layout.json");
  const auto withId = [&](const std::string& id) {
    return replacing(whole, "\"id\" : \"4E6D1B2C-8F10-4A55-9C3E-6A1B7D20F311\"", "\"id\" : \"" + id + '"');
  };
  const std::string unsafe = "The layout's identifier is not one Velto can safely use as a filename.";
  const struct {
    std::string bytes, reason;
  } cases[] = {
      {"", kMalformed},
      {"null", kMissing},
      {whole.substr(0, whole.size() - 1), kMalformed},
      {replacing(whole, "      \"zoom\" : 1", "      \"Zoom\" : 1"), kMissing},
      {replacing(whole, "\"2026-03-01T09:30:12Z\"", "1772357412"), kMalformed},
      {replacing(whole, "2026-03-01T09:30:12Z", "9999-12-31T23:59:59-00:01"), kMalformed},
      {withId("../x"), unsafe},
      {withId(".."), unsafe},
      {withId(""), unsafe},
      {withId("a\\n"), unsafe},
      {withId(std::string(128, 'a')), ""},
      {withId(std::string(129, 'a')), unsafe},
      {R"({"schemaVersion":2,"id":7})", "Saved by a newer version of Velto (format 2)."},
      {R"({"schemaVersion":"2"})", kMalformed},
  };
  for (const auto& each : cases) EXPECT_EQ(reason(each.bytes), each.reason) << each.bytes.substr(0, 80);
}

TEST(LayoutFormat, RaisesOldFormats) {
  for (const char* version : {"0", "-3", "1.0"}) {
    const auto bytes = replacing(golden("layout.json"), "\"schemaVersion\" : 1",
                                 std::string("\"schemaVersion\" : ") + version);
    EXPECT_EQ(read(bytes), goldenLayout()) << version;
  }
}

TEST(LayoutFormat, DropsThumbnailsThatAreNotItsOwn) {
  const std::pair<std::string, bool> cases[] = {
      {"thumbs/a-b.png", true},   {"thumbs/..png", false},  {"thumbs/.png", false},
      {"/tmp/x.png", false},      {"thumbs/a.jpg", false},  {"thumbs/a/b.png", false},
      {"thumbs/a..b.png", false}, {"thumbs/a.png/", false}, {"thumbs/a\\u0000.png", false},
  };
  const std::string own = *goldenLayout().windows[0].thumbnail;
  for (const auto& [path, stays] : cases) {
    const Layout layout = read(replacing(golden("layout.json"), own, path));
    EXPECT_EQ(layout.windows[0].thumbnail.has_value(), stays) << path;
  }
}

}  // namespace
}  // namespace velto
