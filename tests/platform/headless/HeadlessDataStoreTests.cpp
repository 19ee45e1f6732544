#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/EngineUrl.h"
#include "platform/headless/HeadlessDataStore.h"
#include "platform/headless/HeadlessPlatform.h"

namespace velto {
namespace {

HttpCookie cookie(const std::string& name, const std::string& value) {
  HttpCookie made;
  made.name = name;
  made.value = value;
  made.domain = "a.example";
  return made;
}

TEST(HeadlessCookieStore, CompletesLaterWhateverHappensToTheCookie) {
  VirtualLoop loop;
  HeadlessCookieStore store(loop);
  int completed = 0;
  const auto count = [&] { ++completed; };
  store.setCookie(cookie("a", "1"), count);
  store.setCookie(cookie("", "nameless"), count);
  EXPECT_EQ(completed, 0);
  loop.drain();
  EXPECT_EQ(completed, 2);
  EXPECT_EQ(store.cookies(), std::vector<HttpCookie>{cookie("a", "1")});
}

TEST(HeadlessCookieStore, OneCookieForEachNameDomainAndPath) {
  VirtualLoop loop;
  HeadlessCookieStore store(loop);
  HttpCookie elsewhere = cookie("a", "2");
  elsewhere.path = "/x";
  for (const HttpCookie& c : {cookie("a", "1"), elsewhere, cookie("a", "3")}) store.setCookie(c, {});
  EXPECT_EQ(store.cookies(), (std::vector<HttpCookie>{cookie("a", "3"), elsewhere}));
  HttpCookie expired = cookie("a", "");
  expired.expires = loop.now();
  store.setCookie(expired, {});
  EXPECT_EQ(store.cookies(), std::vector<HttpCookie>{elsewhere});
}

TEST(HeadlessCookieStore, HeldCookiesAreSetWhenTheTestSaysSo) {
  VirtualLoop loop;
  HeadlessCookieStore store(loop);
  std::vector<std::string> log;
  store.hold(true);
  store.setCookie(cookie("a", "1"), [&] { log.emplace_back("a"); });
  store.setCookie(cookie("b", "1"), [&] { log.emplace_back("b"); });
  loop.drain();
  EXPECT_TRUE(store.cookies().empty());
  EXPECT_TRUE(store.completeOne());
  loop.drain();
  EXPECT_EQ(log, std::vector<std::string>{"a"});
  EXPECT_EQ(store.heldCookies(), 1U);
  store.completeAll();
  std::vector<HttpCookie> seen;
  store.allCookies([&](auto cookies) { seen = std::move(cookies); });
  EXPECT_TRUE(seen.empty());
  loop.drain();
  EXPECT_EQ(seen.size(), 2U);
}

TEST(HeadlessDataStores, EachWebViewUsesTheStoreItWasGiven) {
  HeadlessPlatform headless;
  HeadlessWebEngine& engine = headless.webEngine();
  auto incognito = engine.makeNonPersistentDataStore();
  EXPECT_FALSE(incognito->isPersistent());
  EXPECT_TRUE(engine.defaultDataStore()->isPersistent());
  const auto normal = engine.makeWebView({}, {});
  WebViewConfiguration configuration;
  configuration.dataStore = incognito;
  auto hidden = engine.makeWebView({}, std::exchange(configuration, {}));
  EXPECT_EQ(&engine.webViews()[0]->dataStore(), engine.defaultDataStore().get());
  EXPECT_EQ(&engine.webViews()[1]->dataStore(), incognito.get());
  incognito.reset();
  EXPECT_EQ(engine.nonPersistentStores().size(), 1U);
  hidden.reset();
  EXPECT_TRUE(engine.nonPersistentStores().empty()) << "gone with its last web view";
}

TEST(EngineUrl, WritesWebAddressesAsEnginesDo) {
  struct Case {
    const char* given;
    const char* written;
  };
  for (const Case& c : {
           Case{"http://localhost:3000", "http://localhost:3000/"},
           {"HTTP://LocalHost:80/Path?Q#F", "http://localhost/Path?Q#F"},
           {"https://Me:Pw@A.example:443?q", "https://Me:Pw@a.example/?q"},
           {"https://a.example:80#f", "https://a.example:80/#f"},
           {"http://[::1]:3000", "http://[::1]:3000/"},
           {"http://a.example:", "http://a.example/"},
           {"about:blank", "about:blank"},
           {"velto-history:///data.json", "velto-history:///data.json"},
           {"file:///home/p/A.html", "file:///home/p/A.html"},
       }) {
    EXPECT_EQ(engineUrl(*Url::parse(c.given)).absoluteString(), c.written);
  }
}

}  // namespace
}  // namespace velto
