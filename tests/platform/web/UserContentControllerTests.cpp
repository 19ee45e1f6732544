#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/HeadlessPlatform.h"
#include "platform/web/UserContentController.h"

namespace velto {
namespace {

using Log = std::vector<std::string>;
const ContentWorld kOwnWorld{"velto"};

UserScript script(const std::string& source, const ContentWorld& world = {}) {
  UserScript made;
  made.source = source;
  made.world = world;
  return made;
}

class ControllerTest : public testing::Test {
 protected:
  ControllerTest() : webView(headless.webEngine().makeWebView({}, {})) {}

  ScriptMessageHandler handler(const std::string& name) {
    return [this, name](WebView&, const ScriptMessage&) { log.push_back(name); };
  }
  void receive(const std::string& name, const ContentWorld& world = {}) {
    controller.receive(*webView, {name, JsonValue({})}, world, [this](const ScriptReply& reply) {
      log.push_back(reply.error ? "error" : "reply " + reply.json.value_or("nothing"));
    });
  }
  HeadlessPlatform headless;
  std::unique_ptr<WebView> webView;
  UserContentController controller;
  Log log;
};

class RecordingMirror final : public UserContentController::Mirror {
 public:
  void addScript(const UserScript& script) override { log.push_back("script " + script.source); }
  void addChannel(const UserContentController::Channel& channel, bool replies) override {
    log.push_back((replies ? "reply channel " : "channel ") + channel.name + "/" + channel.world.name);
  }
  void removeChannel(const UserContentController::Channel& channel) override {
    log.push_back("no channel " + channel.name + "/" + channel.world.name);
  }
  Log log;
};

TEST_F(ControllerTest, NamesAreApartInEachWorld) {
  controller.addMessageHandler("velto", handler("page"));
  controller.addMessageHandler("velto", handler("own"), kOwnWorld);
  receive("velto");
  receive("velto", kOwnWorld);
  receive("velto", {"other"});
  receive("Velto");
  EXPECT_EQ(log, (Log{"page", "reply nothing", "own", "reply nothing", "error", "error"}));
}

TEST_F(ControllerTest, TheSecondHandlerReplacesTheFirst) {
  controller.addMessageHandler("velto", handler("first"));
  controller.addReplyHandler("velto", [](WebView&, const ScriptMessage&, const auto& reply) {
    reply({"1", {}});
  });
  receive("velto");
  EXPECT_EQ(log, Log{"reply 1"});
  EXPECT_EQ(controller.channels().size(), 1U);
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

TEST_F(ControllerTest, TheMirrorSeesWhatWasThereAndEachChange) {
  controller.addUserScript(script("a"));
  controller.addMessageHandler("m", handler("m"));
  RecordingMirror mirror;
  controller.setMirror(&mirror);
  EXPECT_EQ(mirror.log, (Log{"script a", "channel m/"}));
  mirror.log.clear();
  controller.addUserScript(script("b", kOwnWorld));
  controller.addReplyHandler(
      "m", [](WebView&, const ScriptMessage&, const auto&) {}, kOwnWorld);
  controller.addMessageHandler("m", handler("again"));
  controller.removeMessageHandler("unknown");
  controller.removeMessageHandler("m");
  EXPECT_EQ(mirror.log,
            (Log{"script b", "reply channel m/velto", "no channel m/", "channel m/", "no channel m/"}));
  mirror.log.clear();
  controller.setMirror(nullptr);
  controller.addUserScript(script("c"));
  EXPECT_TRUE(mirror.log.empty());
  EXPECT_EQ(controller.userScripts().size(), 3U);
}

}  // namespace
}  // namespace velto
