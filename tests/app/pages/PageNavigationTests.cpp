#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/pages/PageNavigation.h"
#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;
using test::url;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class PageNavigationTest : public ::testing::Test {
 protected:
  void setPage(std::string_view address, const ScriptedPage& page) {
    app_.headless.webEngine().setPage(address, page);
  }
  void fails(std::string_view address, int code, const char* domain = WebError::kUrlDomain) {
    setPage(address, {.error = WebError{domain, code, "It failed\nbadly.", {}}});
  }
  HovrelPanel& show(std::string_view address, const WindowOptions& options = {}) {
    if (!started_) app_.settle();
    started_ = true;
    return app_.showWindow(address, options);
  }
  std::string htmlOf(const HovrelPanel& panel) { return TestApplication::pageOf(panel).html(); }
  /// What was called with this prefix, without it.
  std::vector<std::string> called(const std::string& prefix) {
    std::vector<std::string> found;
    for (const std::string& entry : app_.log()) {
      if (entry.starts_with(prefix)) found.push_back(entry.substr(prefix.size()));
    }
    return found;
  }
  /// The debug log's messages, without its first line.
  std::vector<std::string> logged() {
    std::vector<std::string> messages;
    std::istringstream text(*app_.headless.files().readIfPossible("/home/p/Documents/urlbar_debug.txt"));
    for (std::string line; std::getline(text, line);) {
      const auto mark = line.find(": [Nav] ");
      if (mark != std::string::npos) messages.push_back(line.substr(mark + 8));
    }
    return messages;
  }

  TestApplication app_;
  bool started_ = false;
};

TEST_F(PageNavigationTest, aPageThatLoadedIsAVisit) {
  const struct {
    const char* address;
    const char* title;
    const char* windowTitle;
    std::vector<std::string> visits;
  } cases[] = {
      {"https://a.example/x", "The Page", "The Page", {"https://a.example/x The Page"}},
      {"http://a.example:8080/", "", "a.example", {"http://a.example:8080/ "}},
      {"about:blank", "Blank", "Velto", {}},
      {"velto-history:all", "", "Velto", {}},
  };
  for (const auto& c : cases) {
    setPage(c.address, {.title = c.title});
    HovrelPanel& panel = show(c.address);
    EXPECT_EQ(panel.title(), c.windowTitle) << c.address;
    EXPECT_EQ(called("history: visit "), c.visits) << c.address;
    EXPECT_THAT(called("bar: load started"), testing::SizeIs(1)) << c.address;
    EXPECT_THAT(called("bar: page "), testing::SizeIs(c.visits.size())) << c.address;
    app_.log().clear();
  }
}

TEST_F(PageNavigationTest, privateWindowsAndTestsLeaveNoTrace) {
  app_.setTestMode();
  setPage("https://a.example/", {.title = "The Page"});
  EXPECT_EQ(show("https://a.example/").title(), "hovrel-window");
  EXPECT_THAT(called("history: visit "), ElementsAre("https://a.example/ The Page"));
  app_.log().clear();
  EXPECT_EQ(show("https://a.example/", {.incognito = true}).webView->title(), "The Page");
  EXPECT_THAT(called("history: "), IsEmpty());
}

TEST_F(PageNavigationTest, theLogKeepsPrivatePagesToItself) {
  setPage("https://a.example/secret", {.redirectTo = "https://b.example/secret"});
  fails("http://localhost/secret", -1004);
  fails("http://127.0.0.1/secret", -1004);
  setPage("http://[::1]/secret", {.error = WebError{WebError::kUrlDomain, -1004, "No http://[::1]/secret",
                                                    url("http://[::1]/secret")}});
  show("https://a.example/secret", {.incognito = true});
  HovrelPanel& panel = show("http://localhost/secret", {.incognito = true});
  panel.close();
  app_.settleDown();
  EXPECT_THAT(logged(), Contains("loopback fallback: trying (private)"));
  EXPECT_THAT(logged(), Contains("didFailProvisionalNavigation: (private) | Error Domain=NSURLErrorDomain "
                                 "Code=-1004 \"(private)\""));
  for (const std::string& line : logged()) {
    EXPECT_THAT(line, Not(testing::AnyOf(HasSubstr("secret"), HasSubstr("example"), HasSubstr("localhost"))));
  }
}

TEST_F(PageNavigationTest, thePlayerComesBackWhateverLeadsToItsAddress) {
  HovrelPanel& panel = show("velto-player://youtube?v=abcdefghijk");
  HeadlessWebView& page = TestApplication::pageOf(panel);
  const std::string address = page.url()->absoluteString();
  const auto comesBack = [&](const char* how) {
    app_.settleDown();
    EXPECT_THAT(called("player: "), ElementsAre("velto-player://youtube?v=abcdefghijk")) << how;
    EXPECT_EQ(htmlOf(panel), "<title>Velto Video</title>") << how;
    EXPECT_EQ(page.url()->absoluteString(), address) << how;
    app_.log().clear();
  };
  comesBack("at first");
  page.reload();
  comesBack("reload");
  page.crash();
  app_.settleDown();
  EXPECT_THAT(called("player: "), IsEmpty()) << "not before the person wants it";
  page.clickLink(address);
  comesBack("the crash page's link");
  page.crash();
  page.reload();
  comesBack("reload of the crash page");
}

TEST_F(PageNavigationTest, aFailureSaysSoAndCanBeRetried) {
  fails("https://a.example/x", -1003);
  HovrelPanel& panel = show("https://a.example/x");
  EXPECT_THAT(htmlOf(panel), HasSubstr("<h1>Velto can’t find the server</h1>"));
  EXPECT_EQ(panel.title(), "a.example");
  EXPECT_EQ(panel.webView->url(), url("https://a.example/x"));

  panel.lastKnownScroll = LayoutScroll{0, 9};
  setPage("https://a.example/x", {.title = "Back"});
  TestApplication::pageOf(panel).clickLink("https://a.example/x");
  app_.settleDown();
  EXPECT_EQ(htmlOf(panel), "");
  EXPECT_EQ(panel.title(), "Back");
  EXPECT_FALSE(panel.lastKnownScroll);
  EXPECT_THAT(called("history: visit "), ElementsAre("https://a.example/x Back"))
      << "the failure was no visit";
}

TEST_F(PageNavigationTest, onlyFailuresOfThePageInTheWindowAreShown) {
  const WebError refused{WebError::kUrlDomain, -1004, "Refused", {}};
  fails("https://silent.example/", -999);
  fails("https://download.example/", 102, WebError::kWebKitDomain);
  for (const char* address : {"https://silent.example/", "https://download.example/"}) {
    EXPECT_EQ(htmlOf(show(address)), "") << address;
  }
  setPage("https://half.example/", {.error = refused, .failsAfterCommit = true});
  EXPECT_THAT(htmlOf(show("https://half.example/")), HasSubstr("can’t connect"));

  setPage("https://slow.example/", {.loadDelay = 5, .error = refused});
  HovrelPanel& panel = show("https://slow.example/");
  const Navigation old = *panel.currentNavigation;
  TestApplication::pageOf(panel).clickLink("https://fast.example/");
  app_.settleDown();
  app_.headless.advance(60);
  EXPECT_EQ(htmlOf(panel), "");
  panel.webView->navigationDelegate()->didFailProvisionalNavigation(*panel.webView, old, refused);
  app_.settleDown();
  EXPECT_EQ(panel.webView->url(), url("https://fast.example/")) << "a late word of the page before";
  EXPECT_EQ(htmlOf(panel), "");
}

TEST_F(PageNavigationTest, aFailurePageThatFailsIsNotReplacedForEver) {
  fails("https://a.example/", -1003);
  HovrelPanel& panel = show("https://a.example/");
  app_.log().clear();
  panel.webView->navigationDelegate()->didFailNavigation(*panel.webView, *panel.failurePageNavigation,
                                                         {"x", 1, "", {}});
  EXPECT_THAT(called("engine: "), IsEmpty());
}

TEST_F(PageNavigationTest, localhostFallsBackToTheLoopbackAddresses) {
  const struct {
    const char* what;
    std::vector<int> codes;  // of localhost, 127.0.0.1, [::1]; 0 loads
    std::vector<std::string> tried;
    const char* shown;  // in the failure page; empty for a page
  } cases[] = {
      {"the name works", {0, 0, 0}, {}, ""},
      {"IPv4", {-1004, 0, 0}, {"http://127.0.0.1:3000/"}, ""},
      {"IPv6", {-1003, -1005, 0}, {"http://127.0.0.1:3000/", "http://[::1]:3000/"}, ""},
      {"none", {-1004, -1001, -1004}, {"http://127.0.0.1:3000/", "http://[::1]:3000/"}, "“localhost:3000/”"},
      {"it answers, but badly", {-1004, -1007, 0}, {"http://127.0.0.1:3000/"}, "“localhost:3000/”"},
      {"no matter of the address", {-1200, 0, 0}, {}, "“localhost:3000/”"},
  };
  for (const auto& c : cases) {
    const char* hosts[] = {"http://localhost:3000/", "http://127.0.0.1:3000/", "http://[::1]:3000/"};
    for (std::size_t i = 0; i < 3; ++i) {
      setPage(hosts[i], {});
      if (c.codes[i] != 0) fails(hosts[i], c.codes[i]);
    }
    app_.log().clear();
    HovrelPanel& panel = show(hosts[0]);
    std::vector<std::string> expected{"http://localhost:3000/"};
    expected.insert(expected.end(), c.tried.begin(), c.tried.end());
    EXPECT_EQ(called("engine: load "), expected) << c.what;
    EXPECT_THAT(htmlOf(panel), HasSubstr(c.shown)) << c.what;
    const bool isPage = c.shown[0] == '\0';
    EXPECT_EQ(htmlOf(panel).empty(), isPage) << c.what;
    EXPECT_FALSE(panel.loopbackAttempt) << c.what;
    EXPECT_EQ(called("bar: page "), std::vector<std::string>(isPage ? 1 : 0, expected.back())) << c.what;
  }
}

TEST_F(PageNavigationTest, goingElsewhereEndsTheSearch) {
  fails("http://localhost:3000/", -1004);
  fails("https://b.example/", -1004);
  setPage("http://127.0.0.1:3000/", {.loadDelay = ScriptedPage::kNever});
  HovrelPanel& panel = show("http://localhost:3000/");
  ASSERT_TRUE(panel.loopbackAttempt);
  TestApplication::pageOf(panel).clickLink("https://b.example/");
  app_.settleDown();
  EXPECT_THAT(htmlOf(panel), HasSubstr("“https://b.example/”"));
  EXPECT_FALSE(panel.loopbackAttempt);
}

TEST_F(PageNavigationTest, aWindowThatIsClosingLoadsNothingElse) {
  setPage("https://a.example/", {.beforeUnload = true});
  HovrelPanel& panel = show("https://a.example/");
  panel.close();
  app_.settleDown();
  app_.log().clear();
  for (const char* failing : {"http://localhost/", "https://b.example/"}) {
    panel.webView->navigationDelegate()->didFailProvisionalNavigation(
        *panel.webView, {900}, {WebError::kUrlDomain, -1004, "", url(failing)});
  }
  EXPECT_THAT(called("engine: "), IsEmpty());
  const WeakPtr<HovrelPanel> weak(panel);
  app_.headless.windowSystem().answerAlert("Leave Page");
  app_.settleDown();
  EXPECT_FALSE(weak);
}

/// A page that is scrolled as far as its height lets it.
class ScrollTest : public PageNavigationTest {
 protected:
  static constexpr const char* kPage = "https://a.example/";

  void open(const LayoutScroll& target) {
    app_.settle();
    started_ = true;
    panel_ = app_.openWindow(kPage, {.scroll = target});
    TestApplication::pageOf(*panel_).setScriptAnswer([this](std::string_view script) {
      script_ = script;
      const LayoutScroll before = position_;
      position_ = {std::min(target_.x, height_), std::min(target_.y, height_)};
      return answer_ ? answer_ : listOf({before.x, before.y, position_.x, position_.y});
    });
    target_ = target;
    app_.settleDown();
  }
  static std::optional<JsonValue> listOf(const std::vector<double>& numbers) {
    JsonValue::Array list;
    for (const double number : numbers) list.emplace_back(JsonValue::Storage(number));
    return JsonValue(std::move(list));
  }
  std::size_t passes() { return TestApplication::pageOf(*panel_).scripts().size(); }
  bool isOver() { return !panel_->pendingScrollRestore && !panel_->lastScrollRestoreObservation; }

  WeakPtr<HovrelPanel> panel_;
  LayoutScroll target_, position_;
  double height_ = 1e9;
  std::optional<JsonValue> answer_;
  std::string script_;
};

TEST_F(ScrollTest, endsWhereThePageIsToBe) {
  open({0.5, 1e21});
  EXPECT_EQ(script_,
            "(function () {\n  var beforeX = window.scrollX || 0;\n  var beforeY = window.scrollY || 0;\n"
            "  window.scrollTo(0.5, 1000000000000000000000);\n"
            "  return [beforeX, beforeY, window.scrollX || 0, window.scrollY || 0];\n})();");
  panel_->close();
  app_.settleDown();
  height_ = 1e9;
  position_ = {};
  open({0, 500});
  EXPECT_EQ(passes(), 1U);
  EXPECT_TRUE(isOver());
}

TEST_F(ScrollTest, takesFourPassesAtMostAndNoneAfterwards) {
  height_ = 100;
  open({0, 500});
  app_.headless.advance(1.01);
  EXPECT_EQ(passes(), 3U);
  EXPECT_FALSE(isOver());
  app_.headless.advance(1.5);
  EXPECT_EQ(passes(), 4U);
  EXPECT_TRUE(isOver());
  app_.headless.advance(60);
  EXPECT_EQ(passes(), 4U);
}

TEST_F(ScrollTest, aPageThatGrowsGetsThere) {
  height_ = 100;
  open({0, 500});
  height_ = 499.5;
  app_.headless.advance(0.3);
  EXPECT_EQ(passes(), 2U);
  EXPECT_TRUE(isOver()) << "within a point";
}

TEST_F(ScrollTest, whoeverScrollsMeanwhileWins) {
  height_ = 100;
  open({0, 500});
  position_.y = 98.5;
  app_.headless.advance(60);
  EXPECT_EQ(passes(), 2U);
  EXPECT_TRUE(isOver());
}

TEST_F(ScrollTest, aReplyThatIsNoPositionEndsIt) {
  for (const auto& answer : {listOf({1, 2, 3}), std::optional(JsonValue("x")),
                             std::optional(JsonValue(JsonValue::Array(4, JsonValue(true))))}) {
    answer_ = answer;
    open({0, 500});
    app_.headless.advance(60);
    EXPECT_EQ(passes(), 1U);
    EXPECT_TRUE(isOver());
  }
}

TEST_F(ScrollTest, stopsForAnotherTargetPageOrEnd) {
  height_ = 100;
  open({0, 500});
  panel_->pendingScrollRestore = LayoutScroll{0, 600};
  app_.headless.advance(60);
  EXPECT_EQ(passes(), 1U);
  EXPECT_TRUE(panel_->pendingScrollRestore) << "it waits for the next page";

  open({0, 500});
  setPage("https://b.example/", {.loadDelay = ScriptedPage::kNever});
  TestApplication::pageOf(*panel_).clickLink("https://b.example/");
  app_.headless.advance(30);
  EXPECT_EQ(passes(), 1U);

  open({0, 500});
  panel_->close();
  app_.headless.advance(60);
  EXPECT_FALSE(panel_);
}

TEST_F(ScrollTest, nothingRunsInAPageThatIsNotToBeScrolled) {
  EXPECT_THAT(TestApplication::pageOf(show(kPage)).scripts(), IsEmpty());
  EXPECT_THAT(TestApplication::pageOf(show(kPage, {.scroll = LayoutScroll{}})).scripts(), IsEmpty());
}

}  // namespace
}  // namespace velto
