#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/pages/FailurePage.h"
#include "app/pages/LoopbackCandidates.h"
#include "tests/support/TestApplication.h"
#include "tests/support/UrlSupport.h"

namespace velto {
namespace {

using test::TestApplication;
using test::url;
using ::testing::HasSubstr;

WebError urlError(int code) { return {WebError::kUrlDomain, code, "", {}}; }

TEST(FailurePage, saysWhatIsWrong) {
  const struct {
    std::vector<int> codes;
    std::string text;
  } cases[] = {
      {{-1005, -1004}, "because Velto can’t connect to the server “localhost”."},
      {{-1003}, "because Velto can’t find the server “localhost”."},
      {{-1001}, "because the server “localhost” stopped responding."},
      {{-1204, -1203, -1202, -1201, -1200},
       "because Velto can’t verify the identity of the server “localhost”."},
      {{-1009}, "because your computer is not connected to the Internet."},
      {{-1102, -1100}, "Velto runs in the macOS sandbox and can’t read “localhost:3000/a”."},
      {{-1002, -1000}, "“localhost:3000/a” isn’t an address Velto can open."},
      {{-1, -1006, -1101, -1103, -1199, -1205, 0}, "because too many redirects."},
  };
  for (const auto& c : cases) {
    for (const int code : c.codes) {
      const WebError error{WebError::kUrlDomain, code, "Too many redirects.", {}};
      EXPECT_THAT(failurePage("{{body}}", url("http://localhost:3000/a"), error), HasSubstr(c.text)) << code;
    }
  }
}

TEST(FailurePage, givesTheReasonOfOtherErrors) {
  const struct {
    std::string domain, description, reason;
  } cases[] = {
      {"x", "Ωmega", "ωmega"},
      {"x", "<b> & \"c\"", "&lt;b&gt; &amp; &quot;c&quot;"},
      {"x", "Not \xFF UTF-8", "not \xEF\xBF\xBD UTF-8"},
      {"x", " \n", "of an unknown error."},
  };
  for (const auto& c : cases) {
    // A code of another domain means something else.
    EXPECT_EQ(failurePage("{{body}}", url("https://a/"), {c.domain, -1004, c.description, {}}),
              "Velto can’t open the page “https://a/” because " + c.reason);
  }
}

TEST(FailurePage, namesTheAddressAndOffersWhatCanBeTriedAgain) {
  const auto retry = [](const std::string& link) {
    return "responding.<p class=\"retry\"><a href=\"" + link + "\">Try Again</a></p>";
  };
  const struct {
    std::optional<Url> address;
    std::string named, server, end;
  } cases[] = {
      {url("http://a.example/?x=1&y='2'"), "“a.example/?x=1&amp;y='2'”", "“a.example”",
       retry("http://a.example/?x=1&amp;y='2'")},
      {url("https://[::1]:3000/"), "“https://[::1]:3000/”", "“::1”", retry("https://[::1]:3000/")},
      {std::nullopt, "“that address”", "“the server”", "responding."},
      {url("javascript:x()"), "“javascript:x()”", "“the server”", "responding."},
      {url("DATA:text/html,x"), "“DATA:text/html,x”", "“the server”", "responding."},
      {url("blob:https://a.example/1"), "“blob:https://a.example/1”", "“the server”", "responding."},
  };
  for (const auto& c : cases) {
    const std::string text = failurePage("{{body}}{{retry}}", c.address, urlError(-1001));
    EXPECT_THAT(text, HasSubstr("the page " + c.named + " because the server " + c.server + " stopped"));
    EXPECT_THAT(text, testing::EndsWith(c.end));
  }
}

TEST(FailurePage, fillsEachMarkOnceAndLeavesTheRest) {
  const auto filled = [](std::string_view text) {
    return failurePage(text, url("http://a/"), {"x", 1, "{{retry}} {{heading}}", {}});
  };
  EXPECT_THAT(filled("{{body}}"), testing::EndsWith("because {{retry}} {{heading}}"));
  EXPECT_EQ(filled("{{other}} {{ {{heading}} {{{heading}} {{"),
            "{{other}} {{ Velto can’t open the page {{{heading}} {{");
}

TEST(LoopbackCandidates, takeThePlaceOfTheNameAlone) {
  const auto first = nextLoopbackCandidate({}, url("https://u@LocalHost:3000/a?b#c"));
  ASSERT_TRUE(first);
  EXPECT_EQ(first->candidate, url("https://u@127.0.0.1:3000/a?b#c"));
  // The failing address of a later attempt is not where the search began.
  const auto second = nextLoopbackCandidate(first->attempt, url("http://127.0.0.1/"));
  ASSERT_TRUE(second);
  EXPECT_EQ(second->candidate, url("https://u@[::1]:3000/a?b#c"));
  EXPECT_FALSE(nextLoopbackCandidate(second->attempt, url("http://[::1]/")));
  for (const char* other : {"http://127.0.0.1:3000/", "http://localhost.example/", "file:///localhost"}) {
    EXPECT_FALSE(nextLoopbackCandidate({}, url(other))) << other;
  }
}

TEST(CrashPage, namesTheAddressEverywhereAndEscapesIt) {
  EXPECT_EQ(crashPage("<a href=\"{{url}}\">{{url}}</a>", url("https://a.example/?a=1&b='2'")),
            "<a href=\"https://a.example/?a=1&amp;b='2'\">https://a.example/?a=1&amp;b='2'</a>");
  EXPECT_EQ(crashPage("{{url}}", {}), "about:blank");
  EXPECT_EQ(crashPage("{{url", url("https://a.example/")), "{{url");
}

/// An application with two windows; the page of the first is about to die.
class CrashTest : public ::testing::Test {
 protected:
  CrashTest() {
    const auto resources = app_.headless.environment().resourcesDirectory;
    app_.headless.files().writeAtomically(resources / "PageCrashed.html",
                                          "<title>Gone</title><a href=\"{{url}}\">Reload</a>");
    app_.settle();
    panel_ = app_.showWindow("https://a.example/x?a=1&b=2");
    other_ = app_.showWindow("https://b.example/");
    app_.subsystems.log.clear();
  }

  HeadlessWebView& page() { return app_.pageOf(*panel_); }
  void crash() {
    page().crash();
    app_.settleDown();
  }

  TestApplication app_;
  WeakPtr<HovrelPanel> panel_;
  WeakPtr<HovrelPanel> other_;
};

TEST_F(CrashTest, showsInItsWindowAndCanBeReloaded) {
  crash();
  EXPECT_EQ(page().html(), "<title>Gone</title><a href=\"https://a.example/x?a=1&amp;b=2\">Reload</a>");
  EXPECT_EQ(page().url()->absoluteString(), "https://a.example/x?a=1&b=2");
  EXPECT_EQ(app_.pageOf(*other_).html(), "");

  page().clickLink("https://a.example/x?a=1&b=2");
  app_.settleDown();
  EXPECT_EQ(page().html(), "");
  crash();
  EXPECT_THAT(page().html(), HasSubstr("Reload")) << "it was a page again, no failure";
}

TEST_F(CrashTest, aMissingTemplateStillGivesTheLink) {
  app_.headless.files().failAllCalls();
  crash();
  EXPECT_THAT(page().html(), HasSubstr("<a href=\"https://a.example/x?a=1&amp;b=2\">"));
}

TEST_F(CrashTest, keepsTheScrollThatARealNavigationForgets) {
  panel_->lastKnownScroll = LayoutScroll{0, 120};
  crash();
  EXPECT_EQ(panel_->lastKnownScroll, (LayoutScroll{0, 120}));
  page().clickLink("https://a.example/next");
  app_.settleDown();
  EXPECT_FALSE(panel_->lastKnownScroll);
}

TEST_F(CrashTest, aProcessThatDiesOfThisPageTooIsNotStartedOverAndOver) {
  const auto shown = [this] {
    return app_.subsystems.countOf("engine: loadSubstitute https://a.example/x?a=1&b=2");
  };
  crash();
  crash();
  EXPECT_EQ(shown(), 2) << "its button works again";
  for (int i = 0; i < 10; ++i) crash();
  EXPECT_EQ(shown(), 3);
  app_.headless.advance(60);
  crash();
  EXPECT_EQ(shown(), 4) << "much later it is worth another try";
}

TEST_F(CrashTest, theWindowIsStillFoundByItsAddress) {
  crash();
  app_.receive(
      {"velto://open?reuse=true&url="
       "https%3A%2F%2Fa.example%2Fx%3Fa%3D1%26b%3D2"});
  EXPECT_EQ(app_.panelCount(), 2U);
  EXPECT_EQ(app_.headless.application().keyWindow(), panel_.get());
}

}  // namespace
}  // namespace velto
