#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "browsing/safari/SafariBinaryCookies.h"
#include "tests/support/CookieFileWriter.h"

namespace velto {
namespace {

using Kind = SafariBinaryCookies::ParseError::Kind;
using SafariBinaryCookies::parse;

SafariCookie cookie(const std::string& name, const std::string& value = "v") {
  return {.domain = ".example.com", .name = name, .path = "/", .value = value, .expires = {1.8e9}};
}

std::optional<Kind> failure(const std::string& bytes) {
  try {
    parse(bytes);
  } catch (const SafariBinaryCookies::ParseError& error) {
    return error.kind();
  }
  return std::nullopt;
}

/// What one record gives after bytes of it were changed, with an untouched one behind it.
std::vector<SafariCookie> parsedAfter(std::size_t offset, std::uint64_t value, std::size_t size = 4) {
  std::string record = cookieRecord(cookie("changed"));
  putLittle(record, offset, value, size);
  return parse(cookieFile(std::vector{cookiePage({record, cookieRecord(cookie("last"))})}));
}

TEST(SafariBinaryCookies, ReadsEveryFieldInTheOrderOfTheFile) {
  SafariCookie full = {.domain = ".Example.COM",
                       .name = "SID",
                       .path = "/a/b",
                       .value = "",
                       .expires = {-1e12},
                       .isSecure = true,
                       .isHTTPOnly = true,
                       .sameSite = SafariCookieSameSite::strict,
                       .created = WallTime{1.7e9 + 0.25}};
  const std::vector<SafariCookie> cookies = {full, cookie("b"), full, cookie("long", std::string(5000, 'x'))};
  EXPECT_EQ(parse(cookieFile(cookies)), cookies);

  const auto page = [](const char* name) { return cookiePage({cookieRecord(cookie(name))}); };
  const auto parsed = parse(cookieFile(std::vector{page("1"), cookiePage({}), std::string(), page("2")}));
  EXPECT_EQ(parsed, (std::vector{cookie("1"), cookie("2")}));
}

TEST(SafariBinaryCookies, TheTableOfPagesMustBeWhole) {
  const std::string one = cookieFile({cookie("a")});
  const std::size_t end = one.size() - 8;
  EXPECT_EQ(parse(one.substr(0, end)).size(), 1U) << "nothing behind the pages is read";
  for (std::size_t size = 0; size < end; ++size) {
    EXPECT_EQ(failure(one.substr(0, size)), size < 8 ? Kind::notACookieFile : Kind::truncated) << size;
  }
  EXPECT_EQ(failure("Cook" + bigEndian(0)), Kind::notACookieFile);
  EXPECT_TRUE(parse("cook" + bigEndian(0)).empty());
  EXPECT_EQ(failure("cook" + bigEndian(2) + bigEndian(0)), Kind::truncated);
  EXPECT_EQ(failure("cook" + bigEndian(0xFFFFFFFF) + bigEndian(0)), Kind::truncated);
  std::string second = cookieFile(std::vector{cookiePage({cookieRecord(cookie("a"))}), std::string("page")});
  second.replace(12, 4, bigEndian(0xFFFFFFFF));
  EXPECT_EQ(failure(second), Kind::truncated) << "the first page counts no more either";
}

TEST(SafariBinaryCookies, ADamagedRecordIsLeftOutAlone) {
  const struct {
    const char* what;
    std::size_t offset;
    std::uint64_t value;
    bool isKept;
  } cases[] = {
      {"smaller than its head", 0, 55, false},
      {"size beyond the page", 0, 0x10000, false},
      {"size at its extreme", 0, 0xFFFFFFFF, false},
      {"without room for the end of the value", 0, 56 + 13 + 8 + 2 + 1, false},
      {"domain at the extreme", 16, 0xFFFFFFFF, false},
      {"domain without end", 16, 56 + 13 + 8 + 2 + 2, false},
      {"empty domain", 16, 56 + 12, false},
      {"empty name", 20, 56 + 12, false},
      {"path beyond the record", 24, 0x1000, false},
      {"value beyond the record", 28, 0x1000, false},
      {"empty path", 24, 56 + 12, true},
      {"a name in the head of the record", 20, 8, false},
      {"fields that nobody reads", 4, 0xFFFFFFFF, true},
  };
  for (const auto& each : cases) {
    const auto parsed = parsedAfter(each.offset, each.value);
    ASSERT_EQ(parsed.size(), each.isKept ? 2U : 1U) << each.what;
    EXPECT_EQ(parsed.back(), cookie("last")) << each.what;
    EXPECT_EQ(parsed.front().path, "/") << each.what;
  }
}

TEST(SafariBinaryCookies, FlagsAndTimes) {
  using enum SafariCookieSameSite;
  const struct {
    std::uint32_t flags;
    bool isSecure;
    bool isHTTPOnly;
    SafariCookieSameSite sameSite;
  } cases[] = {{0x5, true, true, none},
               {0x9, true, false, lax},
               {0x14, false, true, unspecified},
               {0xFFFFFFE2, false, false, none}};
  for (const auto& each : cases) {
    const SafariCookie read = parsedAfter(8, each.flags).front();
    EXPECT_EQ(read.isSecure, each.isSecure) << each.flags;
    EXPECT_EQ(read.isHTTPOnly, each.isHTTPOnly) << each.flags;
    EXPECT_EQ(read.sameSite, each.sameSite) << each.flags;
  }
  const auto created = [](double seconds) {
    return parsedAfter(48, std::bit_cast<std::uint64_t>(seconds), 8).front().created;
  };
  EXPECT_EQ(created(0.5), WallTime{978307200.5});
  for (const double none : {0.0, -0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(created(none), std::nullopt) << none;
  }
  EXPECT_EQ(parsedAfter(40, 0, 8).front().expires, WallTime{978307200});
}

TEST(SafariBinaryCookies, RepairsTexts) {
  const SafariCookie odd = {.domain = "\xFF", .name = "\xE2\x82", .path = "/\xC3\xA9", .value = "a\xF0\x9F!"};
  const SafariCookie repaired = {.domain = "\uFFFD", .name = "\uFFFD", .path = "/é", .value = "a\uFFFD!"};
  EXPECT_EQ(parse(cookieFile({odd})), std::vector{repaired});
}

TEST(SafariBinaryCookies, EntriesAreReadUntilTheFileEnds) {
  std::string page = cookiePage({cookieRecord(cookie("a")), cookieRecord(cookie("b"))});
  putLittle(page, 4, 0xFFFFFFFF);
  const auto parsed = parse(cookieFile(std::vector{page}));
  EXPECT_EQ(parsed, (std::vector{cookie("a"), cookie("b")}));
  putLittle(page, 4, 1);
  EXPECT_EQ(parse(cookieFile(std::vector{page})), std::vector{cookie("a")});
  putLittle(page, 4, 2);
  putLittle(page, 12, 20);  // both entries lead to the first record
  EXPECT_EQ(parse(cookieFile(std::vector{page})).size(), 2U);
}

TEST(SafariBinaryCookies, NoChangedByteDoesHarm) {
  const std::string whole =
      cookieFile(std::vector{cookiePage({cookieRecord(cookie("a")), cookieRecord(cookie("b"))}),
                             cookiePage({cookieRecord(cookie("c"))})});
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (int value = 0; value < 256; value += at % 4 == 0 ? 1 : 15) {
      std::string changed = whole;
      changed[at] = static_cast<char>(value);
      EXPECT_LE(failure(changed) ? 0U : parse(changed).size(), 100U);
    }
  }
}

TEST(SafariBinaryCookies, OverlapsCostNoMoreThanTheFileIsWorth) {
  constexpr std::size_t kEntries = 300'000;
  const auto file = [](const std::string& record, std::size_t pages) {
    std::string page = {0, 0, 1, 0};
    page.resize(8 + 4 * kEntries);
    putLittle(page, 4, 0xFFFFFFFF);
    for (std::size_t entry = 0; entry < kEntries; ++entry) putLittle(page, 8 + 4 * entry, page.size());
    page += record;
    std::vector<std::string> all(pages);  // of no bytes, so that all of them begin where the last one does
    all.push_back(page);
    return cookieFile(all);
  };
  std::string endless = cookieRecord(cookie("a", std::string(1'000'000, 'x')));
  endless.back() = 'x';
  const std::string large = cookieRecord(cookie("a", std::string(1'000'000, 'x')));
  const std::string small = cookieRecord(cookie("a"));
  for (const std::string& bytes : {file(endless, 0), file(large, 0), file(small, 0), file(small, 300'000)}) {
    std::size_t held = 0;
    for (const SafariCookie& each : parse(bytes)) held += sizeof each + each.value.capacity();
    EXPECT_LE(held, 8 * bytes.size() + (4U << 20U));
  }
}

TEST(SafariCookie, BecomesACookieOfTheStore) {
  SafariCookie full = {.domain = ".Example.com",
                       .name = "SID",
                       .path = "/",
                       .value = "",
                       .expires = {978307200},
                       .isSecure = true,
                       .isHTTPOnly = true,
                       .sameSite = SafariCookieSameSite::strict,
                       .created = WallTime{978307200.5}};
  EXPECT_EQ(makeHttpCookie(full.httpProperties()), (HttpCookie{.name = "SID",
                                                               .value = "",
                                                               .domain = ".example.com",
                                                               .path = "/",
                                                               .expires = WallTime{978307200},
                                                               .secure = true,
                                                               .httpOnly = true,
                                                               .sameSite = HttpCookie::SameSite::strict,
                                                               .created = WallTime{978307200.5}}));
  for (const auto sameSite : {SafariCookieSameSite::none, SafariCookieSameSite::unspecified}) {
    full.sameSite = sameSite;
    EXPECT_EQ(makeHttpCookie(full.httpProperties())->sameSite, std::nullopt);
  }
  EXPECT_EQ(SafariCookie{}.httpProperties().size(), 5U) << "what is not set is not named";
}

}  // namespace
}  // namespace velto
