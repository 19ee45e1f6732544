#include <string>

#include <gtest/gtest.h>

#include "app/launch/CommandLineTarget.h"
#include "app/launch/LaunchCommand.h"
#include "app/launch/PageKey.h"
#include "app/launch/PlayerUrl.h"
#include "tests/support/UrlSupport.h"

namespace velto {
namespace {

using test::url;
using Command = std::optional<LaunchCommand>;

Command parse(std::string_view text) { return parseLaunchUrl(url(text), {}); }

TEST(LaunchCommand, takesItsOwnSchemesAsTheyAreSpelled) {
  EXPECT_TRUE(parse("velto://open?url=https://a"));
  EXPECT_EQ(parse("hovrel://open?url=https://a"), parse("velto://open?url=https://a"));
  for (const char* text :
       {"VELTO://open?url=https://a", "https://open?url=https://a", "velto-player://open?url=https://a"}) {
    EXPECT_FALSE(parse(text)) << text;
  }
}

TEST(LaunchCommand, theHostSelectsTheCommand) {
  EXPECT_EQ(parse("velto://history"), Command(ShowHistory{}));
  EXPECT_EQ(parse("velto://HISTORY?domain=a.com"), Command(ShowHistory{"a.com"}));
  EXPECT_EQ(parse("hovrel://history/ignored/path?domain=&domain=b"), Command(ShowHistory{""}));
  EXPECT_EQ(parse("velto://Layout/x?y=z"), Command(LayoutCommand{url("velto://Layout/x?y=z")}));
  EXPECT_EQ(parse("velto://import-safari?sites=a.com,b.com&sync=1"),
            Command(ImportSafari{false, "a.com,b.com"}));
  EXPECT_EQ(parse("velto://Import-Safari?sites="), Command(ImportSafari{false, ""}));
  EXPECT_EQ(parse("velto://import-safari?sites=a.com&sync=True"), Command(ImportSafari{true, std::nullopt}));
}

TEST(LaunchCommand, anyOtherHostPopsOut) {
  const Command popOut = PopOut{{.request = {.target = url("https://a"), .width = 5}}};
  for (const char* text : {"velto://OPEN/history?url=https://a&width=5", "velto:?url=https://a&width=5",
                           "velto:/history?url=https://a&width=5", "velto://layouts?url=https://a&width=5"}) {
    EXPECT_EQ(parse(text), popOut) << text;
  }
  EXPECT_FALSE(parse("velto://3000"));
}

TEST(LaunchCommand, handsPortsAndTicketOn) {
  const auto command =
      parseLaunchUrl(url("velto://open?url=http://a.local&incognito=true&cookieTicket=t"), {{"a.local", 9}});
  ASSERT_TRUE(command);
  const auto& launch = std::get<PopOut>(*command).launch;
  EXPECT_EQ(launch.request.target, url("http://localhost:9"));
  EXPECT_EQ(launch.cookieTicket, "t");
}

TEST(CommandLineTarget, acceptsUrlsThatTheProgramOpens) {
  const struct {
    const char* argument;
    const char* scheme;
  } cases[] = {
      {"hovrel://history", "hovrel"}, {"HTTPS://A/b", "https"},
      {"file:///tmp/a.html", "file"}, {"Velto-Player://youtube?v=x", "velto-player"},
      {"VELTO://open", "velto"},      {"http:", "http"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(parseCommandLineTarget(c.argument), (CommandLineTarget{c.scheme, test::url(c.argument)}))
        << c.argument;
  }
}

TEST(CommandLineTarget, skipsOptionsAndEverythingElse) {
  for (const char* argument :
       {"", "-", "--url=https://a", "-https://a", "3000", "localhost:3000", "about:blank",
        "javascript:alert(1)", "velto-history://history/", "/tmp/a.html", " https://a", "https"}) {
    EXPECT_FALSE(parseCommandLineTarget(argument)) << argument;
  }
}

std::string launchUrl(bool playing, std::optional<std::int64_t> start) {
  return playerLaunchURL("aB3-_efghiJ", playing, start)->absoluteString();
}

TEST(PlayerUrl, namesTheVideoAndOnlyWhatIsSet) {
  EXPECT_EQ(launchUrl(true, std::nullopt), "velto-player://youtube?v=aB3-_efghiJ&playing=true");
  EXPECT_EQ(launchUrl(false, 0), "velto-player://youtube?v=aB3-_efghiJ");
  EXPECT_EQ(launchUrl(true, 1), "velto-player://youtube?v=aB3-_efghiJ&playing=true&t=1");
}

TEST(PlayerUrl, refusesBadIds) {
  using namespace std::string_view_literals;
  for (const auto id : {""sv, "abcdefghij"sv, "abcdefghijkl"sv, "abcdefghijk\n"sv, "abcdefghij "sv,
                        "abcdefghi+k"sv, "abcdefghi\u00e9"sv, "abcdefghij\0"sv}) {
    EXPECT_FALSE(isVideoId(id)) << id;
    EXPECT_FALSE(playerLaunchURL(id, true, 5)) << id;
  }
}

TEST(PlayerUrl, isToldBySchemeAndHost) {
  for (const char* text : {"Velto-Player://YouTube", "velto-player://youtube:1/x"}) {
    EXPECT_TRUE(isPlayerURL(url(text))) << text;
  }
  for (const char* text : {"velto-player://other?v=abcdefghijk", "velto-player:///youtube", "velto://youtube",
                           "velto-player://youtube.com"}) {
    EXPECT_FALSE(isPlayerURL(url(text))) << text;
  }
}

TEST(PageKey, foldsWhatDoesNotMakeAnotherPage) {
  const struct {
    const char* text;
    const char* key;
  } cases[] = {
      {"http://a", "http://a/"},
      {"http://a#top", "http://a/"},
      {"HTTPS://Example.COM/Path?Q=A#F", "https://example.com/Path?Q=A"},
      {"http://user:secret@a/", "http://a/"},
      {"http://a:080/", "http://a:80/"},
      {"http://a:/", "http://a/"},
      {"http://a?q", "http://a/?q"},
      {"http://a//b/../c%2f/", "http://a//b/../c%2f/"},
      {"http://[::1]:3000", "http://[::1]:3000/"},
      {"velto-player://youtube?v=abcdefghijk", "velto-player://youtube/?v=abcdefghijk"},
  };
  for (const auto& c : cases) EXPECT_EQ(canonicalPageKey(url(c.text)), c.key) << c.text;
}

TEST(PageKey, needsAHost) {
  for (const char* text : {"about:blank", "file:///a", "http:///a"}) {
    EXPECT_EQ(canonicalPageKey(url(text)), std::nullopt) << text;
  }
}

TEST(PageKey, doesNotMistakeAnAddressForAPort) {
  EXPECT_NE(canonicalPageKey(url("http://[1::2]:80/")), canonicalPageKey(url("http://[1::2:80]/")));
}

}  // namespace
}  // namespace velto
