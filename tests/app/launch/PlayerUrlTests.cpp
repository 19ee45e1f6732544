#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "app/launch/PlayerUrl.h"
#include "tests/support/UrlSupport.h"

namespace velto {
namespace {

using test::url;

std::string launchUrl(bool playing, std::optional<std::int64_t> start) {
  return playerLaunchURL("aB3-_efghiJ", playing, start)->absoluteString();
}

TEST(PlayerUrl, namesTheVideoAndOnlyWhatIsSet) {
  EXPECT_EQ(launchUrl(false, std::nullopt), "velto-player://youtube?v=aB3-_efghiJ");
  EXPECT_EQ(launchUrl(true, std::nullopt), "velto-player://youtube?v=aB3-_efghiJ&playing=true");
  EXPECT_EQ(launchUrl(false, 1), "velto-player://youtube?v=aB3-_efghiJ&t=1");
  EXPECT_EQ(launchUrl(true, 90), "velto-player://youtube?v=aB3-_efghiJ&playing=true&t=90");
  EXPECT_EQ(launchUrl(false, 0), "velto-player://youtube?v=aB3-_efghiJ");
  EXPECT_EQ(launchUrl(false, -5), "velto-player://youtube?v=aB3-_efghiJ");
  EXPECT_EQ(launchUrl(false, std::numeric_limits<std::int64_t>::max()),
            "velto-player://youtube?v=aB3-_efghiJ&t=9223372036854775807");
}

TEST(PlayerUrl, refusesBadIds) {
  using namespace std::string_view_literals;
  for (const auto id :
       {""sv, "short"sv, "abcdefghij"sv, "abcdefghijkl"sv, "abcdefghijk\n"sv, "abcdefghij\n"sv,
        "abcdefghij "sv, "abcdefghi+k"sv, "abcdefghi&="sv, "abcdefghi\u00e9"sv, "abcdefghij\0"sv}) {
    EXPECT_FALSE(isVideoId(id)) << id;
    EXPECT_FALSE(playerLaunchURL(id, true, 5)) << id;
  }
}

TEST(PlayerUrl, isToldBySchemeAndHost) {
  for (const char* text :
       {"velto-player://youtube?v=abcdefghijk", "Velto-Player://YouTube", "velto-player://youtube:1/x"}) {
    EXPECT_TRUE(isPlayerURL(url(text))) << text;
  }
  for (const char* text :
       {"velto-player://other?v=abcdefghijk", "velto-player:youtube", "velto-player:///youtube",
        "velto://youtube", "https://youtube", "velto-player://youtube.com"}) {
    EXPECT_FALSE(isPlayerURL(url(text))) << text;
  }
}

}  // namespace
}  // namespace velto
