#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/HeadlessPlatform.h"
#include "platform/headless/HeadlessWebView.h"
#include "tests/platform/headless/PageRecorder.h"

namespace velto {
namespace {

using Log = std::vector<std::string>;

class HeadlessWebViewTest : public testing::Test {
 protected:
  HeadlessWebViewTest() {
    remake();
    engine.setPage("http://a.example/", {.title = "A"});
    engine.setPage("http://b.example/", {.title = "B"});
    engine.setPage("http://asks.example/", {.title = "Asks", .beforeUnload = true});
    engine.setPage("http://slow.example/", {.title = "Slow", .loadDelay = 5});
    engine.setPage("http://long.example/", {.title = "Long", .finishDelay = 5});
  }
  void remake() {
    webView = engine.makeWebView({{0, 0}, {200, 100}}, {});
    webView->setNavigationDelegate(recorder);
    webView->setUIDelegate(recorder);
  }
  std::optional<Navigation> load(const std::string& text) { return webView->load({*Url::parse(text)}); }
  /// Loads and lets everything happen that takes no time.
  void show(const std::string& text) {
    load(text);
    headless.advance();
    recorder.take();
  }
  HeadlessWebView& page() { return *engine.webViews().back(); }
  std::string address() const { return webView->url() ? webView->url()->absoluteString() : "none"; }

  HeadlessPlatform headless;
  HeadlessWebEngine& engine = headless.webEngine();
  PageRecorder recorder;
  std::unique_ptr<WebView> webView;
};

TEST_F(HeadlessWebViewTest, ALoadIsToldAsynchronouslyInItsOrder) {
  EXPECT_EQ(address(), "none");
  EXPECT_EQ(load("http://a.example")->number, 1U);
  EXPECT_TRUE(recorder.log.empty());
  EXPECT_TRUE(webView->isLoading());
  EXPECT_EQ(address(), "http://a.example/");
  EXPECT_EQ(webView->title(), "");
  headless.advance();
  EXPECT_EQ(recorder.take(), (Log{"start 1", "commit 1", "finish 1"}));
  EXPECT_FALSE(webView->isLoading());
  EXPECT_EQ(webView->title(), "A");
  EXPECT_TRUE(headless.loop().isIdle());
}

TEST_F(HeadlessWebViewTest, UnknownAddressesAreEmptyPages) {
  for (const char* text : {"about:blank", "https://nobody.example/x?y#z"}) {
    show("http://a.example/");
    show(text);
    EXPECT_EQ(address(), text);
    EXPECT_EQ(webView->title(), "");
  }
}

TEST_F(HeadlessWebViewTest, APageIsFoundWithAndWithoutAFragment) {
  show("http://a.example/#part");
  EXPECT_EQ(webView->title(), "A");
  engine.setPage("http://a.example/#part", {.title = "Part"});
  show("http://a.example/#part");
  EXPECT_EQ(webView->title(), "Part");
  EXPECT_THROW(engine.setPage("no url", {}), std::invalid_argument);
}

TEST_F(HeadlessWebViewTest, DelaysFailuresAndRedirectsComeAsScripted) {
  const WebError refused{WebError::kUrlDomain, -1004, "Could not connect to the server.", {}};
  engine.setPage("http://refused.example/", {.error = refused});
  engine.setPage("http://broken.example/", {.finishDelay = 1, .error = refused, .failsAfterCommit = true});
  engine.setPage("http://never.example/", {.loadDelay = ScriptedPage::kNever});
  engine.setPage("http://moved.example/", {.loadDelay = 1, .redirectTo = "http://slow.example"});
  engine.setPage("http://round.example/", {.redirectTo = "http://round.example/"});
  struct Case {
    const char* url;
    double takes;
    Log log;
    const char* shows;
    const char* failing;
  };
  for (const Case& c : {
           Case{"http://slow.example/", 5, {"start 1", "commit 1", "finish 1"}, "http://slow.example/", ""},
           {"http://refused.example/",
            0,
            {"start 1", "fail provisionally 1 -1004"},
            "none",
            "http://refused.example/"},
           {"http://broken.example/",
            1,
            {"start 1", "commit 1", "fail 1 -1004"},
            "http://broken.example/",
            "http://broken.example/"},
           {"http://never.example/",
            60,
            {"start 1", "fail provisionally 1 -1001"},
            "none",
            "http://never.example/"},
           {"http://moved.example/", 6, {"start 1", "commit 1", "finish 1"}, "http://slow.example/", ""},
           {"http://round.example/",
            0,
            {"start 1", "fail provisionally 1 -1007"},
            "none",
            "http://round.example/"},
       }) {
    remake();
    recorder.lastError = {};
    const std::string number = std::to_string(load(c.url)->number);
    if (c.takes > 0) {
      headless.advance(c.takes - 0.001);
      EXPECT_TRUE(webView->isLoading()) << c.url;
      headless.advance(0.001);
    }
    headless.advance();
    Log expected = c.log;
    for (std::string& line : expected) line.replace(line.find('1'), 1, number);
    EXPECT_EQ(recorder.take(), expected) << c.url;
    EXPECT_EQ(address(), c.shows) << c.url;
    const auto& failing = recorder.lastError.failingUrl;
    EXPECT_EQ(failing ? failing->absoluteString() : "", c.failing);
    EXPECT_FALSE(webView->isLoading());
    EXPECT_TRUE(headless.loop().isIdle()) << c.url;
  }
}

TEST_F(HeadlessWebViewTest, ASupersededLoadFailsAsCancelledBeforeTheNextStarts) {
  struct Case {
    const char* url;
    double after;
    Log log;
  };
  for (const Case& c : {Case{"http://a.example/", -1, {"start 1", "fail provisionally 1 -999"}},
                        {"http://slow.example/", 1, {"start 1", "fail provisionally 1 -999"}},
                        {"http://long.example/", 1, {"start 1", "commit 1", "fail 1 -999"}}}) {
    for (const bool stops : {false, true}) {
      HeadlessPlatform platform;
      platform.webEngine().setPage("http://slow.example/", {.loadDelay = 5});
      platform.webEngine().setPage("http://long.example/", {.finishDelay = 5});
      const auto view = platform.webEngine().makeWebView({}, {});
      view->setNavigationDelegate(recorder);
      view->load({*Url::parse(c.url)});
      if (c.after >= 0) platform.advance(c.after);
      Log expected = c.log;
      if (stops) {
        view->stopLoading();
        EXPECT_FALSE(view->isLoading());
      } else {
        view->load({*Url::parse("http://b.example/")});
        expected.insert(expected.end(), {"start 2", "commit 2", "finish 2"});
      }
      platform.advance(10);
      EXPECT_EQ(recorder.take(), expected) << c.url << (stops ? " stopped" : " superseded");
      EXPECT_TRUE(platform.loop().isIdle());
    }
  }
}

TEST_F(HeadlessWebViewTest, ADelegateMayLoadStopOrDestroyInAnyEvent) {
  for (const char* event : {"start", "commit", "finish", "fail"}) {
    for (const std::string act : {"load", "stop", "destroy"}) {
      engine.setPage("http://broken.example/", {.error = WebError{WebError::kUrlDomain, -1004, "", {}}});
      remake();
      recorder.onEvent = [&](WebView& view, const std::string& line) {
        if (!line.starts_with(event)) return;
        recorder.onEvent = nullptr;
        if (act == "load") view.load({*Url::parse("http://b.example/")});
        if (act == "stop") view.stopLoading();
        if (act == "destroy") webView.reset();
      };
      load(std::string(event) == "fail" ? "http://broken.example/" : "http://a.example/");
      headless.advance();
      EXPECT_EQ(recorder.onEvent, nullptr) << event << " was not told";
      if (act == "load") {
        EXPECT_TRUE(recorder.log.back().starts_with("finish")) << event;
        EXPECT_EQ(webView->title(), "B") << event;
      }
      EXPECT_TRUE(headless.loop().isIdle());
    }
  }
}

TEST_F(HeadlessWebViewTest, APageThatAsksIsLeftOrStaysAsThePersonSays) {
  show("http://asks.example/");
  const auto number = [](std::optional<Navigation> n) { return std::to_string(n->number); };
  const std::string stays = number(load("about:blank"));
  headless.advance();
  EXPECT_EQ(recorder.take(), Log{"asked"});
  EXPECT_TRUE(webView->isLoading());
  recorder.questions.at(0)(false);
  EXPECT_TRUE(recorder.log.empty()) << "answers are asynchronous";
  headless.advance();
  EXPECT_EQ(recorder.take(), Log{"fail provisionally " + stays + " -999"});
  EXPECT_EQ(address(), "http://asks.example/");
  EXPECT_FALSE(webView->isLoading());

  const std::string goes = number(load("about:blank"));
  headless.advance();
  recorder.questions.at(1)(true);
  recorder.questions.at(1)(false);
  headless.advance();
  EXPECT_EQ(recorder.take(), (Log{"asked", "start " + goes, "commit " + goes, "finish " + goes}));
  EXPECT_EQ(address(), "about:blank");
}

TEST_F(HeadlessWebViewTest, ALoadThatComesDuringTheQuestionAsksAfterIt) {
  for (const bool firstAnswer : {true, false}) {
    remake();
    recorder.questions.clear();
    show("http://asks.example/");
    const std::string first = std::to_string(load("http://a.example/")->number);
    headless.advance();
    const std::string second = std::to_string(load("http://b.example/")->number);
    headless.advance();
    EXPECT_EQ(recorder.take(), (Log{"asked", "start " + first, "fail provisionally " + first + " -999"}));
    recorder.questions.at(0)(firstAnswer);
    headless.advance();
    EXPECT_EQ(recorder.take(), Log{"asked"});
    recorder.questions.at(1)(true);
    headless.advance();
    EXPECT_EQ(recorder.take(), (Log{"start " + second, "commit " + second, "finish " + second}));
  }
}

TEST_F(HeadlessWebViewTest, WithNobodyToAskAPageIsLeft) {
  show("http://asks.example/");
  webView->setUIDelegate(nullptr);
  show("http://b.example/");
  EXPECT_EQ(webView->title(), "B");
}

TEST_F(HeadlessWebViewTest, TheAnswerMayComeWhenTheWebViewIsGone) {
  show("http://asks.example/");
  load("about:blank");
  headless.advance();
  webView.reset();
  recorder.questions.at(0)(true);
  headless.advance();
  EXPECT_EQ(recorder.log, Log{"asked"});
}

TEST_F(HeadlessWebViewTest, GoesBackAndForwardAndForgetsTheRestOnANewLoad) {
  EXPECT_EQ(webView->goBack(), std::nullopt);
  EXPECT_EQ(webView->reload(), std::nullopt);
  show("http://a.example/");
  show("http://b.example/");
  show("http://b.example/");
  webView->goBack();
  EXPECT_TRUE(webView->canGoBack()) << "until the page is there";
  headless.advance();
  EXPECT_EQ(webView->title(), "A");
  EXPECT_FALSE(webView->canGoBack());
  webView->reload();
  headless.advance();
  EXPECT_TRUE(webView->canGoForward()) << "a reload keeps what lies ahead";
  webView->goForward();
  headless.advance();
  EXPECT_EQ(webView->title(), "B");
  webView->goBack();
  headless.advance();
  show("http://long.example/");
  EXPECT_FALSE(webView->canGoForward());
  EXPECT_EQ(webView->goForward(), std::nullopt);
  EXPECT_TRUE(webView->canGoBack());
}

TEST_F(HeadlessWebViewTest, AFailedLoadLeavesHistoryAndPageAsTheyWere) {
  engine.setPage("http://broken.example/", {.error = WebError{WebError::kUrlDomain, -1004, "", {}}});
  show("http://a.example/");
  show("http://broken.example/");
  EXPECT_EQ(address(), "http://a.example/");
  EXPECT_EQ(webView->title(), "A");
  EXPECT_FALSE(webView->canGoBack());
}

TEST_F(HeadlessWebViewTest, TextIsAPageAtItsBaseWithoutAPlaceInTheHistory) {
  show("http://a.example/");
  webView->loadHtml("<head><title>Trouble</title></head>", Url::parse("http://down.example"));
  headless.advance();
  EXPECT_EQ(address(), "http://down.example/");
  EXPECT_EQ(webView->title(), "Trouble");
  EXPECT_EQ(page().html(), "<head><title>Trouble</title></head>");
  EXPECT_FALSE(webView->canGoBack());
  webView->loadHtml("plain", std::nullopt);
  headless.advance();
  EXPECT_EQ(address(), "about:blank");
  EXPECT_EQ(webView->title(), "");
  show("http://b.example/");
  EXPECT_EQ(page().html(), "");
}

TEST_F(HeadlessWebViewTest, ACrashEndsTheLoadWithoutAWordAndTheNextLoadRecovers) {
  show("http://asks.example/");
  load("http://slow.example/");
  headless.advance(1);
  recorder.questions.at(0)(true);
  headless.advance(1);
  recorder.take();
  page().crash();
  headless.advance(10);
  EXPECT_EQ(recorder.take(), Log{"terminated"});
  EXPECT_FALSE(webView->isResponsive());
  EXPECT_FALSE(webView->isLoading());
  bool scriptAnswered = false;
  webView->evaluateJavaScript("1", [&](const auto& result) { scriptAnswered = !result; });
  webView->takeSnapshot(10, [](const auto& png) { EXPECT_FALSE(png); });
  headless.advance();
  EXPECT_TRUE(scriptAnswered);
  const std::string again = std::to_string(webView->reload()->number);
  headless.advance();
  EXPECT_EQ(recorder.take(), (Log{"start " + again, "commit " + again, "finish " + again}))
      << "a dead page asks nothing";
  EXPECT_TRUE(webView->isResponsive());
  EXPECT_EQ(webView->title(), "Asks");
}

TEST_F(HeadlessWebViewTest, APageThatDoesNotRespondHoldsLoadsAndScripts) {
  show("http://a.example/");
  page().setScriptAnswer([](std::string_view) { return readJson("7"); });
  page().setResponsive(false);
  page().setResponsive(false);
  Log answers;
  webView->evaluateJavaScript("x",
                              [&](const auto& result) { answers.push_back(result ? "answer" : "none"); });
  load("http://b.example/");
  headless.advance(100);
  EXPECT_EQ(recorder.take(), Log{"not responsive"});
  EXPECT_TRUE(answers.empty());
  page().setResponsive(true);
  headless.advance();
  EXPECT_EQ(answers, Log{"answer"});
  const Log told = recorder.take();
  EXPECT_EQ(told.front(), "responsive");
  EXPECT_EQ(told.size(), 4U);
  EXPECT_EQ(webView->title(), "B");
}

TEST_F(HeadlessWebViewTest, ScriptsAreRecordedAndAnsweredLater) {
  engine.setPage("http://a.example/",
                 {.answerScript = [](std::string_view script) -> std::optional<JsonValue> {
                   if (script == "ok") return readJson("[1, 2]");
                   return std::nullopt;
                 }});
  show("http://a.example/");
  std::vector<std::optional<JsonValue>> results;
  const auto keep = [&](std::optional<JsonValue> result) { results.push_back(std::move(result)); };
  webView->evaluateJavaScript("ok", keep);
  webView->evaluateJavaScript("throws", keep);
  webView->evaluateJavaScript("nobody listens");
  EXPECT_TRUE(results.empty());
  headless.advance();
  EXPECT_EQ(page().scripts(), (Log{"ok", "throws", "nobody listens"}));
  ASSERT_EQ(results.size(), 2U);
  EXPECT_EQ(results[0], readJson("[1, 2]"));
  EXPECT_EQ(results[1], std::nullopt);
}

TEST_F(HeadlessWebViewTest, AScriptWhosePageWentAwayGivesNothing) {
  show("http://a.example/");
  page().setScriptAnswer([](std::string_view) { return readJson("7"); });
  page().setResponsive(false);
  int empty = 0;
  const auto count = [&](const auto& result) { empty += result ? 0 : 1; };
  webView->evaluateJavaScript("x", count);
  headless.advance();
  page().crash();
  headless.advance();
  EXPECT_EQ(empty, 1);
  show("http://b.example/");
  webView->evaluateJavaScript("y", count);
  webView.reset();
  headless.advance();
  EXPECT_EQ(empty, 2);
}

TEST_F(HeadlessWebViewTest, MessagesReachTheHandlersOfTheirWorld) {
  Log log;
  webView->configuration().userContentController->addReplyHandler(
      "velto",
      [&](WebView& view, const ScriptMessage& message, const auto& reply) {
        EXPECT_EQ(&view, webView.get());
        log.push_back(*message.body.as<std::string>());
        reply({"1", {}});
      },
      {"own"});
  const auto keep = [&](const ScriptReply& reply) { log.push_back(reply.error ? "error" : *reply.json); };
  page().postMessage("velto", JsonValue(std::string("hello")), {"own"}, keep);
  page().postMessage("velto", JsonValue(std::string("lost")), {}, keep);
  EXPECT_TRUE(log.empty());
  headless.advance();
  EXPECT_EQ(log, (Log{"hello", "1", "error"}));
}

TEST_F(HeadlessWebViewTest, SnapshotsArePicturesOfTheWidthAskedFor) {
  const auto snapshot = [&](double width) {
    std::optional<std::string> result;
    webView->takeSnapshot(width, [&](auto png) { result = std::move(png); });
    EXPECT_EQ(result, std::nullopt);
    headless.advance();
    return result;
  };
  EXPECT_EQ(snapshot(40), std::nullopt) << "nothing to show yet";
  show("http://a.example/");
  for (const double width : {0.0, -1.0, 1e9}) EXPECT_EQ(snapshot(width), std::nullopt) << width;
  const auto png = snapshot(40);
  ASSERT_TRUE(png);
  EXPECT_TRUE(png->starts_with("\x89PNG\r\n\x1a\n"));
  EXPECT_EQ(png->substr(16, 8), std::string("\0\0\0\x28\0\0\0\x14", 8)) << "40 wide, 20 high";
}

TEST_F(HeadlessWebViewTest, TheEngineLogsWhatItIsAskedAndListsLiveViews) {
  bool shownAlready = true;
  engine.onLog = [&](const std::string& entry) {
    if (entry.starts_with("load ")) shownAlready = engine.webViews().back()->superview() != nullptr;
  };
  auto second = engine.makeWebView({}, {});
  second->load({*Url::parse("http://B.example")});
  EXPECT_FALSE(shownAlready);
  second->loadHtml("", std::nullopt);
  second->stopLoading();
  EXPECT_EQ(engine.log(), (Log{"makeWebView", "makeWebView", "load http://B.example", "loadHtml about:blank",
                               "stopLoading"}));
  EXPECT_EQ(engine.webViews().size(), 2U);
  webView.reset();
  EXPECT_EQ(engine.webViews(), std::vector<HeadlessWebView*>{dynamic_cast<HeadlessWebView*>(second.get())});
}

}  // namespace
}  // namespace velto
