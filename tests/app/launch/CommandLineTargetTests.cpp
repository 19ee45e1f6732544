#include <gtest/gtest.h>

#include "app/launch/CommandLineTarget.h"
#include "tests/support/UrlSupport.h"

namespace velto {
namespace {

TEST(CommandLineTarget, acceptsUrlsThatTheProgramOpens) {
  const struct {
    const char* argument;
    const char* scheme;
  } cases[] = {
      {"velto://open?url=https://a", "velto"},
      {"hovrel://history", "hovrel"},
      {"http://a", "http"},
      {"HTTPS://A/b", "https"},
      {"file:///tmp/a.html", "file"},
      {"Velto-Player://youtube?v=abcdefghijk", "velto-player"},
      {"VELTO://open", "velto"},
      {"http:", "http"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(parseCommandLineTarget(c.argument), (CommandLineTarget{c.scheme, test::url(c.argument)}))
        << c.argument;
  }
}

TEST(CommandLineTarget, skipsOptionsAndEverythingElse) {
  for (const char* argument :
       {"", "-", "-verbose", "--url=https://a", "-https://a", "3000", "example.com", "localhost:3000",
        "ftp://a", "about:blank", "javascript:alert(1)", "velto-history://history/", "/tmp/a.html",
        " https://a", "https://a b", "https"}) {
    EXPECT_FALSE(parseCommandLineTarget(argument)) << argument;
  }
}

}  // namespace
}  // namespace velto
