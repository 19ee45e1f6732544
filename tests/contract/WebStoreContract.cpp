#include "tests/contract/WebContract.h"

namespace velto::test {
namespace {

using ::testing::IsEmpty;

class WebStoreContract : public WebContract {
 protected:
  void set(DataStore& store, const HttpCookie& cookie) {
    bool done = false;
    store.cookieStore().setCookie(cookie, [&] { done = true; });
    ASSERT_TRUE(contract.runUntil([&] { return done; }));
  }
  std::vector<HttpCookie> cookiesOf(DataStore& store) {
    std::optional<std::vector<HttpCookie>> cookies;
    store.cookieStore().allCookies([&](std::vector<HttpCookie> all) { cookies = std::move(all); });
    EXPECT_TRUE(contract.runUntil([&] { return cookies.has_value(); }));
    return cookies.value_or(std::vector<HttpCookie>());
  }
};

TEST_F(WebStoreContract, keepsEveryPartOfACookieInItsOwnStore) {
  WebEngine& engine = contract.platform().webEngine;
  const auto store = engine.makeNonPersistentDataStore();
  const auto other = engine.makeNonPersistentDataStore();
  EXPECT_TRUE(engine.defaultDataStore()->isPersistent());
  EXPECT_FALSE(store->isPersistent());

  HttpCookie plain;
  plain.name = "plain";
  plain.value = "1";
  plain.domain = "site.example";
  HttpCookie full = plain;
  full.name = "full";
  full.domain = ".site.example";
  full.path = "/deep";
  full.expires = WallTime{2100000000};
  full.secure = true;
  full.httpOnly = true;
  full.sameSite = HttpCookie::SameSite::strict;
  for (const HttpCookie& cookie : {plain, full}) set(*store, cookie);
  EXPECT_THAT(cookiesOf(*store), testing::UnorderedElementsAre(plain, full));
  EXPECT_THAT(cookiesOf(*other), IsEmpty());
}

TEST_F(WebStoreContract, keepsWhenACookieOfTheDefaultStoreWasFirstSet) {
  DataStore& store = *contract.platform().webEngine.defaultDataStore();
  HttpCookie first{.name = "dated", .value = "1", .domain = "dates.example"};
  first.expires = WallTime{2100000000};
  first.created = WallTime{1600000000.125};
  HttpCookie refused = first;
  refused.name = "refused";
  refused.value = "a;b";
  HttpCookie anew = first;
  anew.value = "2";
  anew.created.reset();
  const auto dated = [&] {
    std::vector<HttpCookie> all = cookiesOf(store);
    std::erase_if(all, [&](const HttpCookie& cookie) { return cookie.domain != first.domain; });
    return all;
  };
  for (const HttpCookie& cookie : {refused, first}) set(store, cookie);
  EXPECT_THAT(dated(), testing::ElementsAre(first));
  set(store, anew);
  anew.created = first.created;
  EXPECT_THAT(dated(), testing::ElementsAre(anew));

  HttpCookie gone = anew;
  gone.expires = WallTime{1};
  set(store, gone);
  EXPECT_THAT(dated(), IsEmpty());
  anew.created.reset();
  set(store, anew);
  EXPECT_THAT(dated(), testing::ElementsAre(anew));
}

/// Answers by the path: its name is what happens.
class Answering final : public UrlSchemeHandler {
 public:
  void startTask(WebView&, std::unique_ptr<UrlSchemeTask> task) override {
    const std::string path = task->url().value().encodedPath();
    mainDocuments.push_back(task->mainDocumentUrl());
    if (path == "/page") task->respond(200, {{"Content-Type", "text/html"}}, "<title>Own</title>");
    if (path == "/fail") task->fail("because");
    if (path == "/later") held = std::move(task);
  }
  std::vector<std::optional<Url>> mainDocuments;
  std::unique_ptr<UrlSchemeTask> held;
};

TEST_F(WebStoreContract, answersAnOwnSchemeThroughTheHandlerOfItsWebView) {
  const auto handler = std::make_shared<Answering>();
  WebViewConfiguration configuration;
  configuration.urlSchemeHandlers["velto-history"] = handler;
  open(configuration);

  const Url page = Url::parse("velto-history://history/page").value();
  visit(page);
  EXPECT_EQ(webView->title(), "Own");
  EXPECT_EQ(webView->url(), page);
  EXPECT_EQ(handler->mainDocuments, std::vector<std::optional<Url>>{page});

  for (const char* path : {"fail", "dropped"}) {
    const auto number = load(Url::parse(std::string("velto-history://history/") + path).value());
    EXPECT_TRUE(waitFor(line("fail provisionally", number, " -1")))
        << path << testing::PrintToString(recorder.log);
  }
  load(Url::parse("velto-history://history/later").value());
  ASSERT_TRUE(contract.runUntil([&] { return handler->held != nullptr; }));
  EXPECT_FALSE(handler->held->isStopped());
  close();
  EXPECT_TRUE(handler->held->isStopped());
  handler->held->respond(200, {}, "too late");
}

#ifdef VELTO_CONTRACT_GTK

TEST_F(WebStoreContract, failsForAnOwnSchemeWithoutAHandler) {
  const auto number = load(Url::parse("velto-history://history/page").value());
  EXPECT_TRUE(waitFor(line("fail provisionally", number, " -1100")));
}

TEST_F(WebStoreContract, keepsTheMainDocumentOfARequestToThePageThatMadeIt) {
  const auto handler = std::make_shared<Answering>();
  WebViewConfiguration configuration;
  configuration.urlSchemeHandlers["velto-history"] = handler;
  open(configuration);
  const Url page = site.add("/a", {.title = "First"});
  visit(page);
  // The page asks while the application is already on its way to another page of the scheme.
  webView->evaluateJavaScript("fetch('velto-history://history/data.json'); 0");
  load(Url::parse("velto-history://history/later").value());
  ASSERT_TRUE(contract.runUntil([&] { return handler->held != nullptr; }));
  ASSERT_EQ(handler->mainDocuments.size(), 2);
  EXPECT_EQ(handler->mainDocuments.front(), page);
}

#endif

}  // namespace
}  // namespace velto::test
