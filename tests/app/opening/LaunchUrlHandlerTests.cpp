#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::CallLog;
using test::TestApplication;
using test::url;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kExpired = "toast: That sign-in handoff expired. Opened incognito, signed out.";

class LaunchUrlHandlerTest : public ::testing::Test {
 protected:
  TestApplication app;
  AppDelegate& delegate = app.settle();
};

TEST(LaunchUrlHandler, commandsReachTheirSubsystem) {
  const struct {
    const char* text;
    CallLog atOnce;
    CallLog queued;
  } cases[] = {
      {"hovrel://LAYOUT/x?list=1", {"layouts: hovrel://LAYOUT/x?list=1"}, {}},
      {"velto://history?domain=a.com", {}, {"history: show \"a.com\""}},
      {"velto://import-safari?sites=a.com,b.com", {}, {"import: show \"a.com,b.com\""}},
      {"velto://import-safari?sites=a.com&sync=TRUE", {}, {"sync: command"}},
      {"Velto://history", {}, {}},
  };
  for (const auto& c : cases) {
    TestApplication app;
    app.settle().applicationOpenURLs({url(c.text)});
    EXPECT_EQ(app.subsystems.takeLog(), c.atOnce) << c.text << " at once";
    app.settleDown();
    EXPECT_EQ(app.log(), c.queued) << c.text << " on the main queue";
  }
}

TEST_F(LaunchUrlHandlerTest, carriesRequestsOutInTheirOrder) {
  delegate.applicationOpenURLs({url("velto://open?url=https://a.example/"), url("velto://open?width=1"),
                                url("velto://history"), url("velto://open?url=https://b.example/")});
  EXPECT_EQ(app.panelCount(), 0U) << "windows are opened on the main queue";
  EXPECT_THAT(app.log(), IsEmpty());
  app.settleDown();
  EXPECT_THAT(app.pages(), ElementsAre("https://a.example/", "https://b.example/"));
  const auto history = test::positionOf(app.log(), "history: show nothing");
  EXPECT_LT(test::positionOf(app.log(), "engine: load https://a.example/"), history);
  EXPECT_GT(test::positionOf(app.log(), "engine: load https://b.example/"), history);
}

TEST(LaunchUrlHandler, redeemsATicketForAPrivateRequestOnly) {
  const struct {
    const char* what;
    const char* query;
    CallLog calls;
  } cases[] = {
      {"private", "incognito=true&cookieTicket=good", {"handoff: redeem good"}},
      {"private and spent", "incognito=true&cookieTicket=spent", {"handoff: redeem spent", kExpired}},
      {"an empty ticket is a bad one", "incognito=true&cookieTicket=", {"handoff: redeem ", kExpired}},
      {"not private", "cookieTicket=good", {}},
  };
  for (const auto& c : cases) {
    TestApplication app;
    HttpCookie cookie;
    cookie.name = "session";
    cookie.domain = "a.example";
    app.subsystems.tickets["good"] = {cookie};
    app.settle().applicationOpenURLs({url(std::string("velto://open?url=https://a.example/&") + c.query)});
    EXPECT_EQ(app.log(), c.calls) << c.what << ": the ticket is read as the request comes in";
    app.settleDown();
    ASSERT_EQ(app.panelCount(), 1U) << c.what;
    const bool signedIn = std::string(c.what) == "private";
    EXPECT_EQ(app.pageOf(app.panel(0)).dataStore().cookieStore().cookies().size(), signedIn ? 1U : 0U)
        << c.what;
  }
}

TEST_F(LaunchUrlHandlerTest, aRequestWithoutAPageDoesNotSpendItsTicket) {
  app.receive({"velto://open?incognito=true&cookieTicket=good"});
  EXPECT_THAT(app.log(), IsEmpty());
}

TEST_F(LaunchUrlHandlerTest, passesEveryKeyOfARequestOn) {
  app.receive(
      {"velto://open?url=https://a.example/&width=420&height=760&x=40&y=60&zoom=150&hide=true&onTop=true"});
  const HovrelPanel& panel = app.lastPanel();
  EXPECT_EQ(panel.frame(), (Rect{{40, 1053 - 60 - 760}, {420, 760}}));
  EXPECT_EQ(panel.webView->pageZoom(), 1.5);
  EXPECT_TRUE(panel.isPinned);
  EXPECT_FALSE(panel.isPrivate);
  EXPECT_THAT(app.log(), Contains("bar: collapsed"));
}

TEST_F(LaunchUrlHandlerTest, rewritesLocalDomainsByThePreferencesOfTheMoment) {
  app.headless.defaults().set("localDomainPorts",
                              PropertyList::Dictionary{{"Shop.local", PropertyList(3000)}});
  app.receive({"velto://open?url=http%3A%2F%2Fshop.local%2Fcart%3Fa%3Db"});
  EXPECT_THAT(app.pages(), ElementsAre("http://localhost:3000/cart?a=b"));
}

}  // namespace
}  // namespace velto
