#include <string>
#include <vector>

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

TEST(PrivateCookies, areSetBeforeThePageIsAskedFor) {
  TestApplication app;
  app.settle();
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

TEST(PrivateCookies, aCookieThatCannotBeSetDoesNotHoldThePageBack) {
  TestApplication app;
  app.settle();
  app.showWindow("https://a.example/", {.incognito = true, .cookies = {cookie("bad", ""), cookie("good")}});
  EXPECT_EQ(app.subsystems.countOf(kLoad), 1);
}

TEST(PrivateCookies, theWindowMayBeGoneByThen) {
  TestApplication app;
  app.settle();
  const HeldStore held(app);
  HovrelPanel& panel = app.showWindow(
      "https://a.example/", {.incognito = true, .dataStore = held.store, .cookies = {cookie("one")}});
  panel.close();
  app.settleDown();
  ASSERT_EQ(app.panelCount(), 0U);
  held.store->cookieStore().completeAll();
  app.settleDown();
  EXPECT_THAT(app.log(), Not(Contains(kLoad)));
}

TEST(PrivateCookies, anOrdinaryWindowTakesNone) {
  TestApplication app;
  app.settle();
  app.showWindow("https://a.example/", {.cookies = {cookie("one")}});
  EXPECT_TRUE(app.headless.webEngine().defaultStore().cookieStore().cookies().empty());
  EXPECT_EQ(app.subsystems.countOf(kLoad), 1);
  EXPECT_THAT(app.log(), Not(Contains(::testing::StartsWith("toast:"))));
}

TEST(PrivateCookies, areNamedToThePerson) {
  const struct {
    std::vector<HttpCookie> cookies;
    const char* toast;
  } cases[] = {
      {{cookie("session")}, "toast: Incognito, signed in with test cookies: session"},
      {{cookie("a"), cookie("b"), cookie("c")}, "toast: Incognito, signed in with test cookies: a, b, c"}};
  for (const auto& c : cases) {
    TestApplication app;
    app.settle();
    app.showWindow("https://a.example/", {.incognito = true, .cookies = c.cookies});
    EXPECT_EQ(app.subsystems.countOf(c.toast), 1);
  }
  TestApplication without;
  without.settle();
  without.showWindow("https://a.example/", {.incognito = true});
  EXPECT_THAT(without.log(), Not(Contains(::testing::StartsWith("toast:"))));
}

TEST(PrivateCookies, closingWhileTheyAreBeingSetIsNotForgotten) {
  TestApplication app;
  app.settle();
  const HeldStore held(app);
  HovrelPanel& panel = app.showWindow(
      "https://a.example/", {.incognito = true, .dataStore = held.store, .cookies = {cookie("one")}});
  panel.close();
  held.store->cookieStore().completeAll();
  app.settleDown();
  EXPECT_EQ(app.panelCount(), 0U);
}

}  // namespace
}  // namespace velto
