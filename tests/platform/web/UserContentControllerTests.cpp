#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/HeadlessPlatform.h"
#include "platform/web/UserContentController.h"

namespace velto {
namespace {

using Log = std::vector<std::string>;

class ControllerTest : public testing::Test {
 protected:
  void receive(const std::string& name, const ContentWorld& world = {}) {
    controller.receive(*webView, {name, JsonValue({})}, world, [this](const ScriptReply& reply) {
      log.push_back(reply.error ? "error" : "reply " + reply.json.value_or("nothing"));
    });
  }
  HeadlessPlatform headless;
  std::unique_ptr<WebView> webView = headless.webEngine().makeWebView({}, {});
  UserContentController controller;
  Log log;
};

TEST_F(ControllerTest, TheSecondHandlerReplacesTheFirstOfItsNameAndWorldOnly) {
  const auto handler = [this](const std::string& name) {
    return [this, name](WebView&, const ScriptMessage&) { log.push_back(name); };
  };
  controller.addMessageHandler("velto", handler("first"));
  controller.addMessageHandler("velto", handler("own"), {"velto"});
  controller.addReplyHandler("velto", [](WebView&, const ScriptMessage&, const auto& reply) {
    reply({"1", {}});
  });
  receive("velto");
  receive("velto", {"velto"});
  receive("velto", {"other"});
  receive("Velto");
  EXPECT_EQ(log, (Log{"reply 1", "own", "reply nothing", "error", "error"}));
}

TEST_F(ControllerTest, AHandlerMayRemoveItselfAndAnswerLater) {
  std::function<void(ScriptReply)> kept;
  controller.addReplyHandler("ask", [&](WebView&, const ScriptMessage&, const auto& reply) {
    controller.removeMessageHandler("ask");
    kept = reply;
  });
  receive("ask");
  receive("ask");
  kept({"true", {}});
  EXPECT_EQ(log, (Log{"error", "reply true"}));
}

TEST_F(ControllerTest, NobodyNeedsToWaitForTheReply) {
  controller.addReplyHandler("ask", [](WebView&, const ScriptMessage&, const auto& reply) { reply({}); });
  controller.receive(*webView, {"ask", JsonValue({})}, {}, nullptr);
  controller.receive(*webView, {"gone", JsonValue({})}, {}, nullptr);
}

}  // namespace
}  // namespace velto
