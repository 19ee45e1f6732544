#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/pages/FailurePage.h"
#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;
using test::url;
using ::testing::HasSubstr;
using ::testing::Not;

TEST(CrashPage, namesTheAddressEverywhereAndEscapesIt) {
  const struct {
    std::string text;
    std::optional<Url> address;
    std::string page;
  } cases[] = {
      {"<a href=\"{{url}}\">{{url}}</a>", url("https://a.example/?a=1&b='2'"),
       "<a href=\"https://a.example/?a=1&amp;b='2'\">https://a.example/?a=1&amp;b='2'</a>"},
      {"{{url}}", {}, "about:blank"},
      {"{{url}}{{url}}", url("https://a/{{url}}"), "https://a/%7B%7Burl%7D%7Dhttps://a/%7B%7Burl%7D%7D"},
      {"no mark", url("https://a.example/"), "no mark"},
      {"{{url", url("https://a.example/"), "{{url"},
      {"", url("https://a.example/"), ""},
  };
  for (const auto& c : cases) EXPECT_EQ(crashPage(c.text, c.address), c.page);
}

TEST(CrashPage, theOneThatIsInstalledHasALinkToThePage) {
  std::ifstream stream(VELTO_SOURCE_DIR "/resources/PageCrashed.html");
  const std::string text(std::istreambuf_iterator<char>(stream), {});
  EXPECT_THAT(crashPage(text, url("https://a.example/?a&b")),
              HasSubstr("href=\"https://a.example/?a&amp;b\""));
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
  EXPECT_TRUE(panel_->failurePageNavigation);
  EXPECT_TRUE(panel_->isVisible());
  EXPECT_EQ(app_.pageOf(*other_).html(), "");
  EXPECT_FALSE(other_->failurePageNavigation);

  page().clickLink("https://a.example/x?a=1&b=2");
  app_.settleDown();
  EXPECT_EQ(page().html(), "");
  EXPECT_FALSE(panel_->failurePageNavigation) << "a page again, no failure";
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

TEST_F(CrashTest, theReloadedPageMayCrashAgainAtOnce) {
  for (int i = 0; i < 3; ++i) {
    crash();
    EXPECT_THAT(page().html(), HasSubstr("Reload"));
    page().clickLink("https://a.example/x?a=1&b=2");
    app_.settleDown();
  }
}

TEST_F(CrashTest, aWindowThatIsClosingShowsNothing) {
  panel_->close();
  page().crash();
  app_.settleDown();
  EXPECT_FALSE(panel_);
  for (const std::string& entry : app_.log()) EXPECT_THAT(entry, Not(HasSubstr("loadHtml")));
}

}  // namespace
}  // namespace velto
