#include <algorithm>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "app/launch/LaunchRequest.h"
#include "tests/support/UrlSupport.h"

namespace velto {
namespace {

using test::url;

std::optional<ParsedLaunch> parse(const std::string& query, const LocalDomainPorts& ports = {}) {
  return parseLaunchRequest(url("velto://open?" + query), ports);
}

std::string target(const std::string& query, const LocalDomainPorts& ports = {}) {
  const auto parsed = parse(query, ports);
  return parsed ? parsed->request.target.absoluteString() : "(dropped)";
}

/// The request for https://a with the given keys.
LaunchRequest request(const std::string& keys) { return parse("url=https://a&" + keys)->request; }

TEST(LaunchRequest, asksForNothingButThePageByDefault) {
  const auto parsed = parse("url=https%3A%2F%2Fexample.com%2Fa%3Fb%3Dc%26d%23e");
  ASSERT_TRUE(parsed);
  EXPECT_EQ(parsed->request, LaunchRequest{.target = url("https://example.com/a?b=c&d#e")});
  EXPECT_EQ(parsed->cookieTicket, std::nullopt);
}

TEST(LaunchRequest, readsEveryKey) {
  const auto parsed = parse(
      "hide=true&noFocus=true&onTop=true&background=true&reuse=true&zoom=150&y=4&x=3&height=2&width=1"
      "&incognito=true&cookieTicket=abc&url=https://a&unknown=5");
  ASSERT_TRUE(parsed);
  const LaunchRequest expected{.target = url("https://a"),
                               .width = 1,
                               .height = 2,
                               .x = 3,
                               .y = 4,
                               .zoom = 1.5,
                               .reuse = true,
                               .background = true,
                               .onTop = true,
                               .noFocus = true,
                               .hide = true,
                               .incognito = true};
  EXPECT_EQ(parsed->request, expected);
  EXPECT_EQ(parsed->cookieTicket, "abc");
}

TEST(LaunchRequest, eachFlagSetsItsOwnField) {
  const struct {
    const char* key;
    bool LaunchRequest::*field;
  } flags[] = {{"reuse", &LaunchRequest::reuse}, {"background", &LaunchRequest::background},
               {"onTop", &LaunchRequest::onTop}, {"noFocus", &LaunchRequest::noFocus},
               {"hide", &LaunchRequest::hide},   {"incognito", &LaunchRequest::incognito}};
  for (const auto& flag : flags) {
    LaunchRequest expected{.target = url("https://a")};
    expected.*flag.field = true;
    EXPECT_EQ(request(std::string(flag.key) + "=true"), expected) << flag.key;
  }
}

TEST(LaunchRequest, flagsAreTrueOnlyWhenTheySayTrue) {
  for (const char* value : {"=true", "=TRUE", "=TrUe", "=%74rue"}) {
    EXPECT_TRUE(request("reuse" + std::string(value)).reuse) << value;
  }
  for (const char* value : {"", "=", "=1", "=yes", "=false", "=true%20", "=%20true", "=truе"}) {
    EXPECT_FALSE(request("reuse" + std::string(value)).reuse) << value;
  }
}

TEST(LaunchRequest, numbersAreWholeAndUnlimited) {
  const struct {
    const char* value;
    std::optional<std::int64_t> number;
  } cases[] = {
      {"420", 420},
      {"+420", 420},
      {"%2B420", 420},
      {"-40", -40},
      {"-0", 0},
      {"0042", 42},
      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
      {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
      {"9223372036854775808", std::nullopt},
      {"99999999999999999999999", std::nullopt},
      {"", std::nullopt},
      {"+", std::nullopt},
      {"-", std::nullopt},
      {"+-1", std::nullopt},
      {"4.0", std::nullopt},
      {"1e3", std::nullopt},
      {"0x10", std::nullopt},
      {"%2042", std::nullopt},
      {"42%20", std::nullopt},
      {"42%0A", std::nullopt},
      {"42%00", std::nullopt},
      {"%EF%BC%94%EF%BC%92", std::nullopt},
      {"%D9%A3", std::nullopt},
      {"%FF", std::nullopt},
  };
  for (const auto& c : cases) {
    for (const char* key : {"width", "height", "x", "y"}) {
      const auto r = request(std::string(key) + "=" + c.value);
      const auto values = {r.width, r.height, r.x, r.y};
      EXPECT_EQ(std::count(values.begin(), values.end(), c.number), c.number ? 1 : 4)
          << key << "=" << c.value;
    }
  }
}

TEST(LaunchRequest, theFirstItemOfAnExactNameCounts) {
  EXPECT_EQ(request("width=500&width=900").width, 500);
  EXPECT_EQ(request("width=abc&width=900").width, std::nullopt);
  EXPECT_EQ(request("width&width=900").width, std::nullopt);
  EXPECT_EQ(request("Width=500").width, std::nullopt);
  EXPECT_EQ(request("%77idth=500").width, 500);
  EXPECT_EQ(request("hide=false&hide=true").hide, false);
  EXPECT_EQ(target("url=https://a&url=https://b"), "https://a");
  EXPECT_EQ(target("url&url=https://b"), "(dropped)");
}

TEST(LaunchRequest, badKeysLeaveTheRestAlone) {
  EXPECT_EQ(request("zoom=0").zoom, std::nullopt);
  EXPECT_EQ(request("zoom=abc").zoom, std::nullopt);
  EXPECT_EQ(request("zoom=24").zoom, 0.25);
  EXPECT_EQ(request("zoom=150%25").zoom, 1.5);
  EXPECT_EQ(request("width=x&height=700&zoom=x"), (LaunchRequest{.target = url("https://a"), .height = 700}));
}

TEST(LaunchRequest, needsATargetThatIsAUrl) {
  for (const char* query : {"", "width=500", "url", "url=", "url=example.com", "url=/path", "url=3000",
                            "url=my%20site", "url=https://a%20b/", "url=://x", "url=%FF", "URL=https://a"}) {
    EXPECT_EQ(target(query), "(dropped)") << query;
  }
  EXPECT_FALSE(parseLaunchRequest(url("velto://open"), {}));
  EXPECT_EQ(target("url=file:///tmp/a"), "file:///tmp/a");
  EXPECT_EQ(target("url=about:blank"), "about:blank");
}

TEST(LaunchRequest, buildsVideoTargets) {
  const std::string video = "player=youtube&v=abcdefghijk";
  EXPECT_EQ(target(video), "velto-player://youtube?v=abcdefghijk");
  EXPECT_EQ(target("t=90&playing=True&" + video), "velto-player://youtube?v=abcdefghijk&playing=true&t=90");
  EXPECT_EQ(target(video + "&playing=1&t=1.5"), "velto-player://youtube?v=abcdefghijk");
  EXPECT_EQ(target(video + "&t=0"), "velto-player://youtube?v=abcdefghijk");
  EXPECT_EQ(target(video + "&url=https://a"), "velto-player://youtube?v=abcdefghijk");
}

TEST(LaunchRequest, aBadVideoIsNotReplacedByThePage) {
  EXPECT_EQ(target("player=youtube&v=short&url=https://example.com"), "(dropped)");
  EXPECT_EQ(target("player=youtube&v=&url=https://example.com"), "(dropped)");
  EXPECT_EQ(target("url=https://example.com&v=abcdefghij!&player=youtube"), "(dropped)");
  // Without an exact player and a video it is no video at all.
  EXPECT_EQ(target("player=YouTube&v=abcdefghijk&url=https://example.com"), "https://example.com");
  EXPECT_EQ(target("player=&v=abcdefghijk&url=https://example.com"), "https://example.com");
  EXPECT_EQ(target("player=youtube&url=https://example.com"), "https://example.com");
  EXPECT_EQ(target("player=youtube&v&v=abcdefghijk&url=https://example.com"), "https://example.com");
  EXPECT_EQ(target("player=youtube"), "(dropped)");
}

TEST(LaunchRequest, sendsLocalDomainsToTheirPort) {
  EXPECT_EQ(target("url=https://me@Shop.local:1/a?b%23c", {{"shop.local", 4000}}),
            "https://me@localhost:4000/a?b#c");
}

TEST(LaunchRequest, onlyAPrivateRequestHasATicket) {
  EXPECT_EQ(parse("url=https://a&cookieTicket=abc")->cookieTicket, std::nullopt);
  EXPECT_EQ(parse("url=https://a&cookieTicket=abc&incognito=1")->cookieTicket, std::nullopt);
  EXPECT_EQ(parse("url=https://a&cookieTicket=abc&incognito=TRUE")->cookieTicket, "abc");
  EXPECT_EQ(parse("url=https://a&cookieTicket=&incognito=true")->cookieTicket, "");
  EXPECT_EQ(parse("url=https://a&cookieTicket&incognito=true")->cookieTicket, std::nullopt);
}

}  // namespace
}  // namespace velto
