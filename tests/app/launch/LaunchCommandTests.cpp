#include <gtest/gtest.h>

#include "app/launch/LaunchCommand.h"
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
       {"VELTO://open?url=https://a", "Hovrel://open?url=https://a", "https://open?url=https://a",
        "velto-player://open?url=https://a", "VELTO://history"}) {
    EXPECT_FALSE(parse(text)) << text;
  }
}

TEST(LaunchCommand, theHostSelectsTheCommand) {
  EXPECT_EQ(parse("velto://history"), Command(ShowHistory{}));
  EXPECT_EQ(parse("velto://HISTORY?domain=a.com"), Command(ShowHistory{"a.com"}));
  EXPECT_EQ(parse("hovrel://history/ignored/path?domain=&domain=b"), Command(ShowHistory{""}));
  EXPECT_EQ(parse("velto://history?domain&url=https://a"), Command(ShowHistory{}));
  EXPECT_EQ(parse("velto://Layout/x?y=z"), Command(LayoutCommand{url("velto://Layout/x?y=z")}));
  EXPECT_EQ(parse("velto://import-safari"), Command(ImportSafari{}));
  EXPECT_EQ(parse("velto://import-safari?sites=a.com,b.com&sync=1"),
            Command(ImportSafari{false, "a.com,b.com"}));
  EXPECT_EQ(parse("velto://Import-Safari?sites="), Command(ImportSafari{false, ""}));
  EXPECT_EQ(parse("velto://import-safari?sites=a.com&sync=True"), Command(ImportSafari{true, std::nullopt}));
}

TEST(LaunchCommand, anyOtherHostPopsOut) {
  const Command popOut = PopOut{{.request = {.target = url("https://a"), .width = 5}}};
  for (const char* text : {"velto://open?url=https://a&width=5", "velto://OPEN/history?url=https://a&width=5",
                           "velto://?url=https://a&width=5", "velto:?url=https://a&width=5",
                           "velto:/history?url=https://a&width=5", "velto://layouts?url=https://a&width=5"}) {
    EXPECT_EQ(parse(text), popOut) << text;
  }
}

TEST(LaunchCommand, dropsAPopOutWithoutAPage) {
  for (const char* text : {"velto://open", "velto://open?width=500", "velto:", "velto://3000",
                           "velto://open?player=youtube&v=short&url=https://example.com"}) {
    EXPECT_FALSE(parse(text)) << text;
  }
}

TEST(LaunchCommand, handsPortsAndTicketOn) {
  const auto command =
      parseLaunchUrl(url("velto://open?url=http://a.local&incognito=true&cookieTicket=t"), {{"a.local", 9}});
  ASSERT_TRUE(command);
  const auto& launch = std::get<PopOut>(*command).launch;
  EXPECT_EQ(launch.request.target, url("http://localhost:9"));
  EXPECT_EQ(launch.cookieTicket, "t");
}

}  // namespace
}  // namespace velto
