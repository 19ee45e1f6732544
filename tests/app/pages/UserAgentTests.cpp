#include <string>

#include <gtest/gtest.h>

#include "app/pages/UserAgent.h"
#include "tests/support/TestApplication.h"

namespace velto {
namespace {

constexpr const char* kInfo = "/Applications/Safari.app/Contents/Info.plist";

std::string infoPlist(const std::string& value) {
  return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>)"
         "<key>CFBundleShortVersionString</key>" +
         value + "</dict></plist>";
}

TEST(UserAgent, takesTheVersionOfSafariWhenItLooksLikeOne) {
  const struct {
    const char* what;
    std::string plist, version;
  } cases[] = {
      {"a version", infoPlist("<string>18.3.1</string>"), "18.3.1"},
      {"odd dots are let through", infoPlist("<string>1..</string>"), "1.."},
      {"begins with a dot", infoPlist("<string>.5</string>"), "17.2"},
      {"a line end, which would split the header", infoPlist("<string>18&#10;X: y</string>"), "17.2"},
      {"a number and no text", infoPlist("<integer>18</integer>"), "17.2"},
      {"no such key", R"(<plist version="1.0"><dict/></plist>)", "17.2"},
      {"no dictionary", R"(<plist version="1.0"><array/></plist>)", "17.2"},
      {"nothing", "", "17.2"},
  };
  for (const auto& c : cases) EXPECT_EQ(safariVersionString(c.plist), c.version) << c.what;
}

TEST(UserAgent, isReadOnceForAllWindows) {
  test::TestApplication app;
  auto& files = app.headless.files();
  files.createDirectory("/Applications/Safari.app/Contents");
  files.writeAtomically(kInfo, infoPlist("<string>18.3</string>"));
  app.settle();
  const std::string agent = app.openWindow("https://a.example/").webView->configuration().userAgent;
  EXPECT_EQ(
      agent,
      "Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15 (KHTML, like Gecko) Version/18.3 "
      "Safari/605.1.15");
  files.remove(kInfo);
  EXPECT_EQ(app.openWindow("https://a.example/").webView->configuration().userAgent, agent);
}

}  // namespace
}  // namespace velto
