#include <limits>
#include <string>
#include <utility>

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
  const auto parsed =
      parse("zoom=150&y=4&x=3&height=2&width=1&incognito=true&cookieTicket=abc&url=https://a&z=5");
  ASSERT_TRUE(parsed);
  const LaunchRequest expected{
      .target = url("https://a"), .width = 1, .height = 2, .x = 3, .y = 4, .zoom = 1.5, .incognito = true};
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
  const std::pair<const char*, std::optional<std::int64_t>> cases[] = {
      {"+420", 420},
      {"%2B420", 420},
      {"-40", -40},
      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
      {"9223372036854775808", std::nullopt},
      {"", std::nullopt},
      {"4.0", std::nullopt},
      {"42%20", std::nullopt},
      {"42%00", std::nullopt},
      {"%D9%A3", std::nullopt},
      {"%FF", std::nullopt},
  };
  for (const auto& [value, number] : cases) {
    EXPECT_EQ(request(std::string("width=") + value).width, number) << value;
  }
}

TEST(LaunchRequest, theFirstItemOfAnExactNameCounts) {
  EXPECT_EQ(request("width=abc&width=900").width, std::nullopt);
  EXPECT_EQ(request("Width=500").width, std::nullopt);
  EXPECT_EQ(request("%77idth=500").width, 500);
  EXPECT_EQ(target("url&url=https://b"), "(dropped)");
}

TEST(LaunchRequest, badKeysLeaveTheRestAlone) {
  EXPECT_EQ(request("width=x&height=700&zoom=x"), (LaunchRequest{.target = url("https://a"), .height = 700}));
}

TEST(LaunchRequest, needsATargetThatIsAUrl) {
  for (const char* query : {"", "width=500", "url=", "url=example.com", "url=/path", "url=https://a%20b/",
                            "url=%FF", "URL=https://a"}) {
    EXPECT_EQ(target(query), "(dropped)") << query;
  }
  EXPECT_EQ(target("url=about:blank"), "about:blank");
}

TEST(LaunchRequest, aVideoGoesBeforeThePageEvenWhenItIsABadOne) {
  EXPECT_EQ(target("t=90&playing=True&player=youtube&v=abcdefghijk&url=https://a"),
            "velto-player://youtube?v=abcdefghijk&playing=true&t=90");
  EXPECT_EQ(target("player=youtube&v=abcdefghijk&playing=1&t=1.5"), "velto-player://youtube?v=abcdefghijk");
  EXPECT_EQ(target("player=youtube&v=short&url=https://a"), "(dropped)");
  // Without an exact player and a video it is no video at all.
  EXPECT_EQ(target("player=YouTube&v=abcdefghijk&url=https://a"), "https://a");
  EXPECT_EQ(target("player=youtube&v&v=abcdefghijk&url=https://a"), "https://a");
  EXPECT_EQ(target("player=youtube"), "(dropped)");
}

TEST(LaunchRequest, sendsLocalDomainsToTheirPort) {
  EXPECT_EQ(target("url=https://me@Shop.local:1/a?b%23c", {{"shop.local", 4000}}),
            "https://me@localhost:4000/a?b#c");
}

TEST(LaunchRequest, onlyAPrivateRequestHasATicket) {
  EXPECT_EQ(parse("url=https://a&cookieTicket=abc")->cookieTicket, std::nullopt);
  EXPECT_EQ(parse("url=https://a&cookieTicket=abc&incognito=1")->cookieTicket, std::nullopt);
  EXPECT_EQ(parse("url=https://a&cookieTicket=&incognito=true")->cookieTicket, "");
  EXPECT_EQ(parse("url=https://a&cookieTicket&incognito=true")->cookieTicket, std::nullopt);
}

}  // namespace
}  // namespace velto
