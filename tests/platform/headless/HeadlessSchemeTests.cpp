#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/HeadlessPlatform.h"
#include "tests/platform/headless/PageRecorder.h"

namespace velto {
namespace {

/// Keeps the tasks for the test to answer.
class KeepingHandler final : public UrlSchemeHandler {
 public:
  void startTask(WebView&, std::unique_ptr<UrlSchemeTask> task) override { tasks.push_back(std::move(task)); }
  std::vector<std::unique_ptr<UrlSchemeTask>> tasks;
};

class HeadlessSchemeTest : public testing::Test {
 protected:
  HeadlessSchemeTest() {
    WebViewConfiguration configuration;
    configuration.urlSchemeHandlers["velto-history"] = handler;
    webView = headless.webEngine().makeWebView({}, std::move(configuration));
    webView->setNavigationDelegate(recorder);
  }
  void load() {
    webView->load({*Url::parse("velto-history://page/")});
    headless.advance();
  }
  HeadlessWebView& page() { return *headless.webEngine().webViews().front(); }
  HeadlessPlatform headless;
  std::shared_ptr<KeepingHandler> handler = std::make_shared<KeepingHandler>();
  PageRecorder recorder;
  std::unique_ptr<WebView> webView;
};

TEST_F(HeadlessSchemeTest, APageIsWhatTheHandlerAnswers) {
  load();
  EXPECT_EQ(recorder.take(), std::vector<std::string>{"start 1"});
  ASSERT_EQ(handler->tasks.size(), 1U);
  UrlSchemeTask& task = *handler->tasks.front();
  EXPECT_EQ(task.url(), Url::parse("velto-history://page/"));
  EXPECT_EQ(task.mainDocumentUrl(), task.url());
  task.respond(403, {{"Cache-Control", "no-store"}}, "<title>History</title>");
  task.respond(200, {}, "twice");
  task.fail("late");
  EXPECT_TRUE(recorder.log.empty());
  headless.advance();
  EXPECT_EQ(recorder.take(), (std::vector<std::string>{"commit 1", "finish 1"}));
  EXPECT_EQ(webView->title(), "History");
  EXPECT_EQ(page().html(), "<title>History</title>");
  EXPECT_EQ(page().response()->status, 403);
  EXPECT_EQ(page().response()->headers.at("Cache-Control"), "no-store");
}

TEST_F(HeadlessSchemeTest, ARequestThatFailsOrIsDroppedFailsTheLoad) {
  for (const bool drops : {false, true}) {
    load();
    if (!drops) handler->tasks.back()->fail("no such page");
    handler->tasks.clear();
    headless.advance();
    EXPECT_TRUE(recorder.take().back().ends_with(" -1"));
    EXPECT_EQ(recorder.lastError.localizedDescription,
              drops ? "The request was not answered" : "no such page");
  }
}

TEST_F(HeadlessSchemeTest, AnAnswerToALoadThatIsOverIsIgnored) {
  load();
  webView->load({*Url::parse("about:blank")});
  handler->tasks.back()->respond(200, {}, "<title>Late</title>");
  headless.advance();
  EXPECT_EQ(webView->title(), "");
  load();
  webView.reset();
  handler->tasks.back()->respond(200, {}, "");
  headless.advance();
}

TEST_F(HeadlessSchemeTest, AHandlerThatDropsItsTasksWithTheWebViewDoesNoHarm) {
  load();
  handler.reset();
  webView.reset();
  headless.advance();
  EXPECT_TRUE(headless.loop().isIdle());
}

TEST_F(HeadlessSchemeTest, APageMayAskForMore) {
  webView->load({*Url::parse("http://a.example/")});
  headless.advance();
  std::vector<SchemeResponse> responses;
  page().fetch("VELTO-HISTORY:///data.json", [&](const SchemeResponse& r) { responses.push_back(r); });
  page().fetch("velto-history:no url", [&](const SchemeResponse& r) { responses.push_back(r); });
  EXPECT_THROW(page().fetch("other:///", [](const SchemeResponse&) {}), std::logic_error);
  headless.advance();
  ASSERT_EQ(handler->tasks.size(), 2U);
  EXPECT_EQ(handler->tasks[0]->mainDocumentUrl(), Url::parse("http://a.example/"));
  EXPECT_EQ(handler->tasks[1]->url(), std::nullopt);
  handler->tasks[1]->respond(400, {}, "");
  handler->tasks[0]->respond(200, {}, "{}");
  headless.advance();
  ASSERT_EQ(responses.size(), 2U);
  EXPECT_EQ(responses[0].status, 400);
  EXPECT_EQ(responses[1].body, "{}");
}

}  // namespace
}  // namespace velto
