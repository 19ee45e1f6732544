#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;
using ::testing::Contains;
using ::testing::Not;

constexpr const char* kLoad = "engine: load https://a.example/";

HttpCookie cookie(const std::string& name, const std::string& domain = "a.example") {
  HttpCookie made;
  made.name = name;
  made.domain = domain;
  return made;
}

/// A store whose cookies wait for the test.
struct HeldStore {
  explicit HeldStore(TestApplication& app)
      : store(std::dynamic_pointer_cast<HeadlessDataStore>(
            app.headless.webEngine().makeNonPersistentDataStore())) {
    store->cookieStore().hold(true);
  }
  std::shared_ptr<HeadlessDataStore> store;
};

class PrivateCookiesTest : public ::testing::Test {
 protected:
  TestApplication app;
  AppDelegate& delegate = app.settle();
};

TEST_F(PrivateCookiesTest, areSetBeforeThePageIsAskedFor) {
  const HeldStore held(app);
  HovrelPanel& panel =
      app.showWindow("https://a.example/", {.incognito = true,
                                            .dataStore = held.store,
                                            .cookies = {cookie("one"), cookie("two"), cookie("three")}});
  EXPECT_TRUE(panel.isVisible()) << "the window does not wait";
  for (int i = 0; i < 3; ++i) {
    EXPECT_THAT(app.log(), Not(Contains(kLoad))) << i << " of 3 cookies are set";
    ASSERT_TRUE(held.store->cookieStore().completeOne());
    app.settleDown();
  }
  EXPECT_EQ(app.subsystems.countOf(kLoad), 1);
  EXPECT_EQ(held.store->cookieStore().cookies().size(), 3U);
  EXPECT_EQ(panel.webView->url()->absoluteString(), "https://a.example/");
}

TEST_F(PrivateCookiesTest, aCookieThatCannotBeSetDoesNotHoldThePageBack) {
  app.showWindow("https://a.example/", {.incognito = true, .cookies = {cookie("bad", ""), cookie("good")}});
  EXPECT_EQ(app.subsystems.countOf(kLoad), 1);
}

TEST(PrivateCookies, theWindowMayBeClosedMeanwhile) {
  for (const bool gone : {true, false}) {
    TestApplication app;
    app.settle();
    const HeldStore held(app);
    HovrelPanel& panel = app.showWindow(
        "https://a.example/", {.incognito = true, .dataStore = held.store, .cookies = {cookie("one")}});
    panel.close();
    if (gone) app.settleDown();
    held.store->cookieStore().completeAll();
    app.settleDown();
    EXPECT_EQ(app.panelCount(), 0U);
    EXPECT_THAT(app.log(), Not(Contains(kLoad)));
  }
}

TEST_F(PrivateCookiesTest, anOrdinaryWindowTakesNone) {
  app.showWindow("https://a.example/", {.cookies = {cookie("one")}});
  EXPECT_TRUE(app.headless.webEngine().defaultStore().cookieStore().cookies().empty());
  EXPECT_EQ(app.subsystems.countOf(kLoad), 1);
  app.showWindow("https://a.example/", {.incognito = true});
  EXPECT_THAT(app.log(), Not(Contains(::testing::StartsWith("toast:"))));
}

TEST_F(PrivateCookiesTest, areNamedToThePerson) {
  app.showWindow("https://a.example/", {.incognito = true, .cookies = {cookie("a"), cookie("b")}});
  EXPECT_EQ(app.subsystems.countOf("toast: Incognito, signed in with test cookies: a, b"), 1);
}

}  // namespace
}  // namespace velto
