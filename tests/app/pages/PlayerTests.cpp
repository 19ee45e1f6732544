#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/pages/AdBlocker.h"
#include "app/pages/StandardPageContent.h"
#include "app/windows/HovrelPanel.h"
#include "platform/headless/HeadlessPlatform.h"
#include "tests/support/PageWindowsSupport.h"
#include "tests/support/UrlSupport.h"

namespace velto {
namespace {

using test::url;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr const char* kPlayer = "velto-player://youtube?v=aB3-_efghiJ&playing=true&t=61";

class PlayerTest : public ::testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<HeadlessWebView> makePage() {
    WebViewConfiguration configuration;
    configuration.userContentController = content_.makeUserContentController(windows_.pageWindows);
    configuration.urlSchemeHandlers = content_.makeUrlSchemeHandlers();
    auto page = headless_.webEngine().makeWebView({{0, 0}, {960, 540}}, std::move(configuration));
    return std::unique_ptr<HeadlessWebView>(static_cast<HeadlessWebView*>(page.release()));
  }
  /// A page that was given the player for the address.
  [[nodiscard]] std::unique_ptr<HeadlessWebView> play(std::string_view text) {
    auto page = makePage();
    content_.loadPlayer(*page, url(text));
    headless_.advance(1);
    return page;
  }
  [[nodiscard]] std::filesystem::path resource() {
    return headless_.environment().resourcesDirectory / PlayerPage::kResource;
  }
  /// The scripts that were added for the player.
  static std::string playerScripts(const HeadlessWebView& page) {
    std::string all;
    for (const UserScript& script : page.configuration().userContentController->userScripts()) {
      if (script.time != UserScript::Time::documentStart) continue;
      EXPECT_TRUE(script.mainFrameOnly);
      all += script.source + "\n";
    }
    return all;
  }

  HeadlessPlatform headless_;
  test::PageWindowsSupport windows_{headless_};
  StandardPageContent content_{headless_.platform(), windows_, nullptr, nullptr};
};

TEST(Player, readsTheAddress) {
  const struct {
    const char* address;
    const char* web;
    const char* config;
  } cases[] = {
      {kPlayer, "?v=aB3-_efghiJ&playing=true&t=61", R"({ v: "aB3-_efghiJ", playing: true, t: 61 })"},
      {"VELTO-Player://YouTube?v=abcdefghijk&t=0", "?v=abcdefghijk",
       R"({ v: "abcdefghijk", playing: false, t: 0 })"},
      {"velto-player://youtube?t=5&playing=TRUE&v=abcdefghijk&v=x&t=9&playing=no",
       "?v=abcdefghijk&playing=true&t=5", R"({ v: "abcdefghijk", playing: true, t: 5 })"},
      {"velto-player://youtube?v=abcdefghijk&playing=1&t=1.5", "?v=abcdefghijk",
       R"({ v: "abcdefghijk", playing: false, t: 0 })"},
      {"velto-player://youtube?v=abcdefghijk&t=99999999999999999999&playing", "?v=abcdefghijk",
       R"({ v: "abcdefghijk", playing: false, t: 0 })"},
      {"velto-player://youtube?v=short", nullptr, nullptr},
      {"velto-player://youtube?v=abcdefg%22ijk", nullptr, nullptr},
      {"velto-player://youtube?v=short&v=abcdefghijk", nullptr, nullptr},
      {"velto-player://other?v=abcdefghijk", nullptr, R"({ v: "abcdefghijk", playing: false, t: 0 })"},
      {"https://youtube?v=abcdefghijk", nullptr, R"({ v: "abcdefghijk", playing: false, t: 0 })"},
  };
  for (const auto& c : cases) {
    const auto web = playerWebURL(url(c.address), "host.example");
    const auto config = playerConfig(url(c.address));
    EXPECT_EQ(web ? web->absoluteString() : "",
              c.web != nullptr ? "https://host.example/player" + std::string(c.web) : "")
        << c.address;
    EXPECT_EQ(config.value_or(""), c.config != nullptr ? c.config : "") << c.address;
  }
  EXPECT_FALSE(playerWebURL(url(kPlayer), "no host"));
}

TEST_F(PlayerTest, runsUnderTheWebHostWithItsOwnConfiguration) {
  const auto first = play(kPlayer);
  const auto second = play("velto-player://youtube?v=abcdefghijk");
  EXPECT_EQ(first->html(), headless_.files().read(resource()));
  EXPECT_EQ(playerScripts(*first),
            "window.__VELTO_PLAYER_CONFIG__ = { v: \"aB3-_efghiJ\", playing: true, t: 61 "
            "};\nwindow.__VELTO_AD_BLOCKER__ = false;\n");
  EXPECT_THAT(playerScripts(*second), HasSubstr("{ v: \"abcdefghijk\", playing: false, t: 0 };"));
}

TEST_F(PlayerTest, isFoundByItsWebAddress) {
  const auto page = play(kPlayer);
  EXPECT_EQ(content_.playerAt(*page->url()), url(kPlayer));
  for (const char* other :
       {"http://velto.example/player?v=aB3-_efghiJ", "https://velto.example/player?v=short",
        "https://velto.example/player/?v=aB3-_efghiJ", "https://velto.example/player",
        "https://velto.example:8443/player?v=aB3-_efghiJ", "https://a.example/player?v=aB3-_efghiJ",
        kPlayer}) {
    EXPECT_FALSE(content_.playerAt(url(other))) << other;
  }
}

TEST_F(PlayerTest, loadedAgainIsTheSameOrAnother) {
  const auto page = play(kPlayer);
  const std::string once = playerScripts(*page);
  content_.loadPlayer(*page, url(kPlayer));
  EXPECT_EQ(playerScripts(*page), once) << "scripts that are there already are not added";
  content_.loadPlayer(*page, url("velto-player://youtube?v=abcdefghijk"));
  content_.loadPlayer(*page, url(kPlayer));
  const std::string config = once.substr(0, once.find('\n') + 1);
  EXPECT_THAT(playerScripts(*page), testing::EndsWith(config)) << "the last one counts";
}

TEST_F(PlayerTest, isLeftToItsSchemeWithoutAVideoOrAPage) {
  const auto withoutVideo = play("velto-player://youtube?v=short");
  EXPECT_EQ(withoutVideo->url(), url("velto-player://youtube?v=short"));
  EXPECT_EQ(withoutVideo->html(), headless_.files().read(resource()));
  EXPECT_EQ(playerScripts(*withoutVideo), "");
  headless_.files().remove(resource());
  EXPECT_EQ(play(kPlayer)->response()->status, 404);
}

TEST_F(PlayerTest, answersRequestsOfItsScheme) {
  const auto page = makePage();
  const auto answerTo = [&](const std::string& address) {
    std::optional<SchemeResponse> got;
    page->fetch(address, [&](const SchemeResponse& response) { got = response; });
    headless_.advance(1);
    return got.value_or(SchemeResponse{});
  };
  const SchemeResponse found = answerTo("velto-player://YOUTUBE/anything?v=short");
  EXPECT_EQ(found.status, 200);
  EXPECT_EQ(found.headers.at("Content-Type"), "text/html; charset=utf-8");
  EXPECT_EQ(found.body, headless_.files().read(resource()));
  for (const char* address : {"velto-player://other?v=abcdefghijk", "velto-player:youtube"}) {
    EXPECT_EQ(answerTo(address).status, 404) << address;
  }
  headless_.files().failAllCalls(FileError::Kind::notPermitted);
  EXPECT_THAT(answerTo("velto-player://youtube").failure.value_or(""), HasSubstr(PlayerPage::kResource));
}

TEST_F(PlayerTest, followTheAdBlockerSwitch) {
  HovrelPanel panel(headless_.application(), {{0, 0}, {960, 540}}, 0);
  const Window empty(headless_.application(), {{0, 0}, {100, 100}}, 0);
  panel.setContentView(std::make_unique<View>());
  const auto& page = static_cast<HeadlessWebView&>(panel.contentView()->addSubview(makePage()));

  AdBlocker blocker(headless_.application(), headless_.defaults());
  blocker.toggle();
  EXPECT_THAT(playerScripts(*play(kPlayer)), HasSubstr("window.__VELTO_AD_BLOCKER__ = true;"));
  blocker.toggle();
  headless_.advance(1);
  EXPECT_THAT(page.scripts(), ElementsAre("window.__setAdBlocker && window.__setAdBlocker(true)",
                                          "window.__setAdBlocker && window.__setAdBlocker(false)"));
}

}  // namespace
}  // namespace velto
