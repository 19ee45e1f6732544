#include "tests/contract/WebContract.h"

namespace velto::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WebViewContract : public WebContract {};

TEST_F(WebViewContract, tellsALoadInOrderAndNeverFromWithinTheCall) {
  const Url url = site.add("/a", {.title = "First"});
  const auto number = load(url);
  EXPECT_THAT(recorder.log, IsEmpty());
  EXPECT_EQ(webView->url(), url);
  EXPECT_TRUE(webView->isLoading());

  ASSERT_TRUE(waitFor(line("finish", number)));
  EXPECT_EQ(recorder.log, wholeLoad(number));
  EXPECT_EQ(webView->title(), "First");
  EXPECT_FALSE(webView->isLoading());
  EXPECT_FALSE(webView->canGoBack());
}

/// An engine may let the processes of many pages start one after the other.
TEST_F(WebViewContract, loadsManyPagesThatWereAskedForAtOnce) {
  const Url url = site.add("/a", {.title = "First"});
  const Url other = site.add("/b", {.title = "Second"});
  std::vector<std::unique_ptr<WebView>> views(6);
  for (auto& view : views) {
    view = contract.platform().webEngine.makeWebView(kFrame, {});
    view->load({url});
    EXPECT_EQ(view->url(), url);
    EXPECT_TRUE(view->isLoading());
  }
  WebView& changed = *views[3];
  WebView& stopped = *views[4];
  changed.load({other});
  EXPECT_EQ(changed.url(), other);
  stopped.stopLoading();
  EXPECT_FALSE(stopped.isLoading());
  views.pop_back();

  ASSERT_TRUE(contract.runUntil([&] {
    return std::none_of(views.begin(), views.begin() + 4, [](const std::unique_ptr<WebView>& view) {
      return view->isLoading() || view->title().empty();
    });
  }));
  for (const std::size_t number : {0U, 1U, 2U}) EXPECT_EQ(views[number]->title(), "First");
  EXPECT_EQ(changed.title(), "Second");
  EXPECT_EQ(stopped.title(), "");
}

TEST_F(WebViewContract, knowsTheTitleWhenTheLoadFinishes) {
  std::vector<std::string> titles;
  recorder.onEvent = [&](WebView& view, const std::string& event) {
    if (event.starts_with("finish")) titles.push_back(view.title());
  };
  visit(site.add("/a", {.title = "First"}));
  visit(site.add("/untitled", {}));
  visit(site.add("/b", {.title = "Second"}));
  EXPECT_THAT(titles, ElementsAre("First", "", "Second"));
}

TEST_F(WebViewContract, keepsTheNumberOverARedirect) {
  const Url target = site.add("/target", {.title = "Target"});
  const auto number = load(site.add("/from", {.redirectTo = "/target"}));
  ASSERT_TRUE(waitFor(line("finish", number)));
  EXPECT_EQ(recorder.log, wholeLoad(number));
  EXPECT_EQ(webView->url(), target);
}

TEST_F(WebViewContract, failsProvisionallyWhereNothingListens) {
  const Url url = site.refused();
  const auto number = load(url);
  ASSERT_TRUE(waitFor(line("fail provisionally", number, " -1004")));
  EXPECT_THAT(recorder.log, ElementsAre(line("start", number), line("fail provisionally", number, " -1004")));
  EXPECT_EQ(recorder.lastError.domain, WebError::kUrlDomain);
  EXPECT_EQ(recorder.lastError.failingUrl, url);

  // Whatever the engine shows about it is no navigation.
  recorder.take();
  visit(site.add("/a", {.title = "First"}));
}

TEST_F(WebViewContract, failsAfterTheCommitWhenThePageIsCutOff) {
  const auto number = load(site.add("/cut", {.title = "Cut", .answer = ContractPage::Answer::cutOff}));
  ASSERT_TRUE(waitFor(line("fail", number, " -1005")));
  EXPECT_THAT(recorder.log,
              ElementsAre(line("start", number), line("commit", number), line("fail", number, " -1005")));
}

TEST_F(WebViewContract, cancelsTheLoadThatAnotherOneTakesThePlaceOf) {
  const Url slow = site.add("/slow", {.answer = ContractPage::Answer::never});
  const Url page = site.add("/a", {.title = "First"});
  for (const bool started : {true, false}) {
    const auto first = load(slow);
    if (started) {
      ASSERT_TRUE(waitFor(line("start", first)));
    }
    const auto second = load(page);
    ASSERT_TRUE(waitFor(line("finish", second)));
    EXPECT_THAT(recorder.take(),
                ElementsAre(line("start", first), line("fail provisionally", first, " -999"),
                            line("start", second), line("commit", second), line("finish", second)))
        << (started ? "the first had started" : "at once");
  }
}

TEST_F(WebViewContract, stops) {
  const Url before = site.add("/a", {.title = "First"});
  visit(before);
  const auto number = load(site.add("/slow", {.answer = ContractPage::Answer::never}));
  ASSERT_TRUE(waitFor(line("start", number)));
  webView->stopLoading();
  ASSERT_TRUE(waitFor(line("fail provisionally", number, " -999")));
  EXPECT_EQ(webView->url(), before);
  EXPECT_FALSE(webView->isLoading());
}

TEST_F(WebViewContract, givesUpAServerThatDoesNotAnswer) {
  const auto number = load(site.add("/slow", {.answer = ContractPage::Answer::never}), 0.3);
  ASSERT_TRUE(waitFor(line("fail provisionally", number, " -1001")));
  EXPECT_THAT(recorder.log, ElementsAre(line("start", number), line("fail provisionally", number, " -1001")));
}

TEST_F(WebViewContract, numbersWhatAPageStartsWhenItStarts) {
  visit(site.add("/a", {.title = "First"}));
  const Url next = site.add("/b", {.title = "Second"});
  site.follow(*webView, next);
  ASSERT_TRUE(contract.runUntil([&] { return recorder.log.size() == 3; }));
  const auto after = load(next);
  const auto number = std::stoull(recorder.log[0].substr(6));
  EXPECT_LT(number, after);
  EXPECT_EQ(recorder.log, wholeLoad(number));
}

TEST_F(WebViewContract, goesBackAndForwardAndReloads) {
  EXPECT_FALSE(webView->goBack());
  EXPECT_FALSE(webView->reload());
  const Url first = site.add("/a", {.title = "First"});
  const Url second = site.add("/b", {.title = "Second"});
  visit(first);
  visit(second);
  EXPECT_FALSE(webView->canGoForward());

  const auto back = webView->goBack().value().number;
  ASSERT_TRUE(waitFor(line("finish", back)));
  EXPECT_EQ(webView->url(), first);
  EXPECT_FALSE(webView->canGoBack());
  const auto forward = webView->goForward().value().number;
  ASSERT_TRUE(waitFor(line("finish", forward)));
  EXPECT_EQ(webView->url(), second);
  const auto reload = webView->reload().value().number;
  ASSERT_TRUE(waitFor(line("finish", reload)));
  EXPECT_TRUE(back < forward && forward < reload);
}

TEST_F(WebViewContract, showsTextAsAPageOfItsAddress) {
  const Url base = site.add("/a", {});
  const auto number = webView->loadHtml("<title>Text</title>hello", base).value().number;
  ASSERT_TRUE(waitFor(line("finish", number)));
  EXPECT_EQ(recorder.log, wholeLoad(number));
  EXPECT_EQ(webView->url(), base);
  EXPECT_EQ(webView->title(), "Text");
}

TEST_F(WebViewContract, showsATextInPlaceOfAPageThatCouldNotBeShown) {
  const Url page = site.add("/a", {.title = "First"});
  const Url part = Url::parse(page.absoluteString() + "#part").value();
  const std::vector<std::pair<const char*, std::function<void()>>> waysOut = {
      {"a link", [&] { site.follow(*webView, page); }},
      {"a link into the page", [&] { site.follow(*webView, part); }},
      {"reload", [&] { webView->reload(); }},
      {"load", [&] { load(page); }},
      {"load a part", [&] { load(part); }}};
  visit(site.add("/before", {.title = "Before"}));
  for (const auto& [way, leave] : waysOut) {
    std::uint64_t shown = 0;
    recorder.onEvent = [&](WebView& view, const std::string& event) {
      if (event.starts_with("fail"))
        shown = view.loadSubstitute("<title>Failed</title>Sorry", page).value().number;
    };
    const auto failed = load(site.refused());
    ASSERT_TRUE(contract.runUntil([&] { return shown != 0; }));
    EXPECT_EQ(webView->url(), page) << way;
    ASSERT_TRUE(waitFor(line("finish", shown))) << way << testing::PrintToString(recorder.log);
    EXPECT_THAT(recorder.take(),
                ElementsAre(line("start", failed), line("fail provisionally", failed, " -1004"),
                            line("start", shown), line("commit", shown), line("finish", shown)))
        << way;
    EXPECT_EQ(webView->url(), page) << way;
    EXPECT_EQ(webView->title(), "Failed") << way;
    EXPECT_TRUE(webView->canGoBack());

    leave();
    EXPECT_TRUE(contract.runUntil([&] { return webView->title() == "First" && !webView->isLoading(); }))
        << way;
    EXPECT_EQ(webView->url()->withoutFragment(), page) << way;
    recorder.onEvent = nullptr;
    contract.letPass(0.12);
    recorder.take();
  }
}

TEST_F(WebViewContract, staysOnAPageThatIsNotToBeLeft) {
  const Url page = site.add("/asks", {.title = "Asks", .beforeUnload = true});
  const Url next = site.add("/a", {.title = "First"});
  visit(page);
  site.touch(*webView);
  for (int attempt = 0; attempt < 2; ++attempt) {
    const auto number = load(next);
    ASSERT_TRUE(waitFor("asked"));
    recorder.questions.back()(false);
    ASSERT_TRUE(waitFor(line("fail provisionally", number, " -999")));
    EXPECT_THAT(recorder.take(), ElementsAre("asked", line("fail provisionally", number, " -999")));
    EXPECT_EQ(webView->url(), page);
    EXPECT_FALSE(webView->isLoading());
  }
  const auto number = load(next);
  ASSERT_TRUE(waitFor("asked"));
  recorder.questions.back()(true);
  ASSERT_TRUE(waitFor(line("finish", number)));
  EXPECT_EQ(webView->url(), next);
}

TEST_F(WebViewContract, leavesAPageWhenNobodyCanBeAsked) {
  visit(site.add("/asks", {.title = "Asks", .beforeUnload = true}));
  site.touch(*webView);
  webView->setUIDelegate(nullptr);
  visit(site.add("/a", {.title = "First"}));
}

TEST_F(WebViewContract, takesAnAnswerWhenItIsGone) {
  visit(site.add("/asks", {.title = "Asks", .beforeUnload = true}));
  site.touch(*webView);
  load(site.add("/a", {}));
  ASSERT_TRUE(waitFor("asked"));
  close();
  recorder.questions.back()(false);
  contract.letPass(0.1);
  EXPECT_THAT(recorder.log, ElementsAre("asked"));
}

TEST_F(WebViewContract, outlivesThePagesProcessAndTheOthersDoNotNotice) {
  PageRecorder otherRecorder;
  const auto other = contract.platform().webEngine.makeWebView({{0, 0}, {100, 100}}, {});
  other->setNavigationDelegate(static_cast<NavigationDelegate*>(&otherRecorder));
  const Url page = site.add("/a", {.title = "First"});
  other->load({page, 60});
  ASSERT_TRUE(contract.runUntil([&] { return otherRecorder.log.size() == 3; }));
  otherRecorder.take();
  visit(page);

  load(site.add("/slow", {.answer = ContractPage::Answer::never}));
  recorder.take();
  site.crash(*webView);
  ASSERT_TRUE(waitFor("terminated"));
  EXPECT_FALSE(webView->isResponsive());
  EXPECT_TRUE(other->isResponsive());
  recorder.take();
  visit(page);
  EXPECT_TRUE(webView->isResponsive());
  EXPECT_THAT(otherRecorder.log, IsEmpty());
}

TEST_F(WebViewContract, mayBeClosedFromWithinAnyEvent) {
  const Url page = site.add("/a", {.title = "First"});
  const Url cut = site.add("/cut", {.title = "Cut", .answer = ContractPage::Answer::cutOff});
  const std::vector<std::pair<std::string, Url>> cases = {{"start", page},
                                                          {"commit", page},
                                                          {"finish", page},
                                                          {"fail provisionally", site.refused()},
                                                          {"fail", cut}};
  for (const auto& [event, url] : cases) {
    bool closed = false;
    recorder.onEvent = [&, name = event + " "](WebView&, const std::string& told) {
      if (closed || !told.starts_with(name)) return;
      closed = true;
      close();
    };
    load(url);
    EXPECT_TRUE(contract.runUntil([&] { return closed; })) << event;
    recorder.onEvent = nullptr;
    contract.letPass(0.05);
    open({});
  }
}

TEST_F(WebViewContract, knowsWhenThePersonTouchedThePage) {
  visit(site.add("/a", {.title = "First"}));
  EXPECT_FALSE(webView->lastUserGesture());
  const Clock& clock = contract.platform().clock;
  for (int touches = 0; touches < 2; ++touches) {
    const Uptime before = clock.uptime();
    site.touch(*webView);
    ASSERT_TRUE(webView->lastUserGesture());
    EXPECT_TRUE(*webView->lastUserGesture() >= before && *webView->lastUserGesture() <= clock.uptime());
    contract.letPass(0.02);
  }
}

}  // namespace
}  // namespace velto::test
