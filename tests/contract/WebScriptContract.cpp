#include "tests/contract/WebContract.h"

namespace velto::test {
namespace {

using ::testing::ElementsAre;

class WebScriptContract : public WebContract {
 protected:
  void SetUp() override {
    configuration.userContentController = controller;
    open(configuration);
    page = site.add("/a", {.title = "First"});
  }
  ScriptMessageHandler noting(const std::string& as) {
    return [this, as](WebView&, const ScriptMessage& message) {
      const auto* text = message.body.as<std::string>();
      received.push_back(as + " " + message.name + " " + (text != nullptr ? *text : "other"));
    };
  }

  std::shared_ptr<UserContentController> controller = std::make_shared<UserContentController>();
  WebViewConfiguration configuration;
  std::optional<Url> page;
  std::vector<std::string> received;
};

TEST_F(WebScriptContract, givesTheLastExpressionAsJson) {
  visit(*page);
  EXPECT_EQ(site.evaluate(*webView, "document.title"), readJson(R"("First")"));
  EXPECT_EQ(site.evaluate(*webView, "[1, 2.5, 'x', null]"), readJson(R"([1, 2.5, "x", null])"));
  EXPECT_EQ(site.evaluate(*webView, "null"), readJson("null"));
  for (const char* none : {"undefined", "throw 1", "1 +", "var loop = {}; loop.loop = loop; loop"}) {
    EXPECT_EQ(site.evaluate(*webView, none), std::nullopt) << none;
  }
}

TEST_F(WebScriptContract, answersForAScriptWhoseWebViewIsGone) {
  visit(*page);
  int answers = 0;
  webView->evaluateJavaScript("document.title", [&](const std::optional<JsonValue>&) { ++answers; });
  webView->takeSnapshot(10, [&](const std::optional<std::string>&) { ++answers; });
  close();
  EXPECT_TRUE(contract.runUntil([&] { return answers == 2; }));
}

TEST_F(WebScriptContract, passesMessagesOnUntilTheHandlerIsRemoved) {
  controller->addMessageHandler("early", noting("page"));
  open(configuration);
  controller->addMessageHandler("late", noting("page"));
  visit(*page);
  site.post(*webView, "early", R"("one")");
  site.post(*webView, "late", R"({"two": 2})");
  ASSERT_TRUE(contract.runUntil([&] { return received.size() == 2; }));
  EXPECT_THAT(received, ElementsAre("page early one", "page late other"));

  controller->removeMessageHandler("early");
  site.post(*webView, "early", R"("three")");
  site.post(*webView, "late", R"("four")");
  ASSERT_TRUE(contract.runUntil([&] { return received.size() == 3; }));
  EXPECT_EQ(received.back(), "page late four");
}

TEST_F(WebScriptContract, keepsTheChannelsOfAnotherWorldFromThePage) {
  controller->addMessageHandler("hidden", noting("hidden"), {"other"});
  controller->addMessageHandler("open", noting("open"));
  visit(*page);
  site.post(*webView, "hidden", R"("one")");
  site.post(*webView, "open", R"("two")");
  ASSERT_TRUE(contract.runUntil([&] { return !received.empty(); }));
  EXPECT_THAT(received, ElementsAre("open open two"));
}

TEST_F(WebScriptContract, repliesAtOnceLaterOrNotAtAll) {
  controller->addReplyHandler(
      "ask", [&](WebView&, const ScriptMessage& message, std::function<void(ScriptReply)> reply) {
        const std::string how = *message.body.as<std::string>();
        if (how == "at once") reply({R"({"onTop":true})", std::nullopt});
        if (how == "error") reply({std::nullopt, "Not now"});
        if (how == "later")
          contract.platform().mainQueue.after(0.05, [reply] { reply({"[1]", std::nullopt}); });
      });
  visit(*page);
  EXPECT_EQ(site.ask(*webView, "ask", R"("at once")")->json, R"({"onTop":true})");
  EXPECT_EQ(site.ask(*webView, "ask", R"("error")")->error, "Not now");
  EXPECT_EQ(site.ask(*webView, "ask", R"("later")")->json, "[1]");
}

TEST_F(WebScriptContract, mayBeClosedByAMessageAndAnsweredAfterwards) {
  std::function<void(ScriptReply)> held;
  controller->addReplyHandler("ask",
                              [&](WebView&, const ScriptMessage&, std::function<void(ScriptReply)> reply) {
                                held = std::move(reply);
                                close();
                              });
  visit(*page);
  webView->evaluateJavaScript("0");
  site.post(*webView, "ask", "1");
  ASSERT_TRUE(contract.runUntil([&] { return webView == nullptr; }));
  contract.letPass(0.05);
  if (held) held({"1", std::nullopt});
}

#ifdef VELTO_CONTRACT_GTK

TEST_F(WebScriptContract, runsUserScriptsInTheirWorldsFramesAndTimes) {
  controller->addMessageHandler("say", noting("page"));
  controller->addMessageHandler("say2", noting("world"), {"other"});
  const std::string say = "webkit.messageHandlers.say.postMessage(";
  controller->addUserScript(
      {"window.early = document.body === null", UserScript::Time::documentStart, true, {}});
  controller->addUserScript({say + "'end ' + window.early)", UserScript::Time::documentEnd, true, {}});
  controller->addUserScript({"webkit.messageHandlers.say2.postMessage('' + window.early)",
                             UserScript::Time::documentEnd,
                             true,
                             {"other"}});
  controller->addUserScript(
      {say + "window.top === window ? 'top' : 'frame')", UserScript::Time::documentEnd, false, {}});
  visit(*page);
  site.evaluate(*webView, "document.body.append(document.createElement('iframe')); 0");
  ASSERT_TRUE(contract.runUntil([&] { return received.size() == 4; }));
  EXPECT_THAT(received, testing::UnorderedElementsAre("page say end true", "world say2 undefined",
                                                      "page say top", "page say frame"));
}

TEST_F(WebScriptContract, dropsMessagesThatCannotBeTrusted) {
  controller->addMessageHandler("say", noting("page"));
  controller->addMessageHandler("twice", noting("page"));
  controller->addMessageHandler("twice", noting("world"), {"other"});
  visit(*page);
  site.post(*webView, "say", "'y'.repeat(2000000)");
  site.post(*webView, "say", "(() => { const loop = {}; loop.loop = loop; return loop })()");
  site.post(*webView, "twice", "'who?'");
  site.post(*webView, "say", "undefined");
  ASSERT_TRUE(contract.runUntil([&] { return !received.empty(); }));
  EXPECT_THAT(received, ElementsAre("page say other"));
}

#endif

}  // namespace
}  // namespace velto::test
