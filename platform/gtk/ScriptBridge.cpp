#include "platform/gtk/ScriptBridge.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "platform/gtk/GtkWebEngine.h"
#include "platform/gtk/Guard.h"
#include "platform/gtk/ScriptValue.h"

namespace velto {

namespace {

/// The engine's name of a world; null stands for the page's own.
const char* worldName(const ContentWorld& world) { return world.name.empty() ? nullptr : world.name.c_str(); }

/// An answer that a script waits for. One that is dropped gives the script an error.
class PendingReply {
 public:
  PendingReply(WebKitScriptMessageReply* reply, JSCValue* message)
      : reply_(webkit_script_message_reply_ref(reply)),
        context_(GObjectPtr<JSCContext>::retain(jsc_value_get_context(message))) {}
  PendingReply(const PendingReply&) = delete;
  PendingReply& operator=(const PendingReply&) = delete;
  ~PendingReply() { answer({std::nullopt, "No answer"}); }

  void answer(const ScriptReply& answer) {
    WebKitScriptMessageReply* reply = std::exchange(reply_, nullptr);
    if (reply == nullptr) return;
    if (answer.error) {
      webkit_script_message_reply_return_error_message(reply, answer.error->c_str());
    } else {
      const auto value = valueOf(answer.json);
      webkit_script_message_reply_return_value(reply, value.get());
    }
    webkit_script_message_reply_unref(reply);
  }

 private:
  [[nodiscard]] GObjectPtr<JSCValue> valueOf(const std::optional<std::string>& json) const {
    if (json) {
      auto value = GObjectPtr<JSCValue>::adopt(jsc_value_new_from_json(context_.get(), json->c_str()));
      jsc_context_clear_exception(context_.get());
      if (value) return value;
    }
    return GObjectPtr<JSCValue>::adopt(jsc_value_new_undefined(context_.get()));
  }

  WebKitScriptMessageReply* reply_;
  GObjectPtr<JSCContext> context_;
};

struct UserScriptUnref {
  void operator()(WebKitUserScript* script) const { webkit_user_script_unref(script); }
};

}  // namespace

ScriptBridge::ScriptBridge(GtkWebEngine& engine, WebView& webView, WebKitWebView* view,
                           std::shared_ptr<UserContentController> controller)
    : engine_(engine),
      webView_(webView),
      manager_(GObjectPtr<WebKitUserContentManager>::retain(webkit_web_view_get_user_content_manager(view))),
      controller_(std::move(controller)),
      loadChanged_(view, "load-changed", G_CALLBACK(loadChanged), this) {
  controller_->setMirror(this);
}

ScriptBridge::~ScriptBridge() {
  controller_->setMirror(nullptr);
  nextSecond_.cancel();
}

void ScriptBridge::addScript(const UserScript& script) {
  const auto frames =
      script.mainFrameOnly ? WEBKIT_USER_CONTENT_INJECT_TOP_FRAME : WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES;
  const auto time = script.time == UserScript::Time::documentStart
                        ? WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START
                        : WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_END;
  const char* source = script.source.c_str();
  const char* world = worldName(script.world);
  const std::unique_ptr<WebKitUserScript, UserScriptUnref> made(
      world == nullptr ? webkit_user_script_new(source, frames, time, nullptr, nullptr)
                       : webkit_user_script_new_for_world(source, frames, time, world, nullptr, nullptr));
  webkit_user_content_manager_add_script(manager_.get(), made.get());
}

void ScriptBridge::addChannel(const UserContentController::Channel& channel, bool replies) {
  const char* name = channel.name.c_str();
  const char* world = worldName(channel.world);
  auto line = std::make_unique<Line>(Line{*this, channel, {}, nullptr});
  // The handler is connected first: a page may post as soon as the name is registered.
  if (replies) {
    const std::string signal = "script-message-with-reply-received::" + channel.name;
    line->received = {manager_.get(), signal.c_str(), G_CALLBACK(messageWithReplyReceived), line.get()};
    webkit_user_content_manager_register_script_message_handler_with_reply(manager_.get(), name, world);
    if (world == nullptr) {
      line->mainFrame =
          std::make_unique<MainFrameProof>(manager_.get(), channel.name, engine_.mainFrameScripts());
    }
  } else {
    const std::string signal = "script-message-received::" + channel.name;
    line->received = {manager_.get(), signal.c_str(), G_CALLBACK(messageReceived), line.get()};
    if (world == nullptr) {
      webkit_user_content_manager_register_script_message_handler(manager_.get(), name);
    } else {
      webkit_user_content_manager_register_script_message_handler_in_world(manager_.get(), name, world);
    }
  }
  lines_.push_back(std::move(line));
}

void ScriptBridge::removeChannel(const UserContentController::Channel& channel) {
  std::erase_if(lines_, [&](const auto& line) { return line->channel == channel; });
  const char* name = channel.name.c_str();
  if (const char* world = worldName(channel.world)) {
    webkit_user_content_manager_unregister_script_message_handler_in_world(manager_.get(), name, world);
  } else {
    webkit_user_content_manager_unregister_script_message_handler(manager_.get(), name);
  }
}

void ScriptBridge::loadChanged(WebKitWebView*, WebKitLoadEvent event, gpointer data) {
  if (event != WEBKIT_LOAD_COMMITTED) return;
  for (const auto& line : static_cast<ScriptBridge*>(data)->lines_) {
    if (line->mainFrame) line->mainFrame->forget();
  }
}

void ScriptBridge::messageReceived(WebKitUserContentManager*, WebKitJavascriptResult* result, gpointer data) {
  guarded([&] {
    const Line& line = *static_cast<Line*>(data);
    if (line.bridge.isAffordable()) {
      line.bridge.receive(line, webkit_javascript_result_get_js_value(result), nullptr);
    }
  });
}

gboolean ScriptBridge::messageWithReplyReceived(WebKitUserContentManager*, JSCValue* value,
                                                WebKitScriptMessageReply* reply, gpointer data) {
  guarded([&] {
    const Line& line = *static_cast<Line*>(data);
    if (!line.bridge.isAffordable()) {
      return webkit_script_message_reply_return_error_message(reply, "Too many messages");
    }
    auto pending = std::make_shared<PendingReply>(reply, value);
    line.bridge.receive(line, value, [pending](const ScriptReply& answer) { pending->answer(answer); });
  });
  return TRUE;
}

bool ScriptBridge::isAffordable() {
  constexpr int kMostInASecond = 1000;
  if (messages_ == 0) nextSecond_ = engine_.queue().after(1, [this] { messages_ = 0; });
  if (messages_ == kMostInASecond) return false;
  ++messages_;
  return true;
}

void ScriptBridge::receive(const Line& line, JSCValue* value, const std::function<void(ScriptReply)>& reply) {
  // A message without a body is one all the same.
  const bool isEmpty = jsc_value_is_undefined(value) != FALSE;
  auto body = isEmpty ? std::make_optional<JsonValue>(JsonValue::Storage()) : jsonFrom(value);
  if (!body || !isUnambiguous(line.channel.name)) {
    if (reply) reply({std::nullopt, "The message cannot be read"});
    return;
  }
  const bool isMainFrame = line.mainFrame && line.mainFrame->unwrap(*body);
  // The handler may remove its channel, or close the web view and this bridge with it.
  const auto controller = controller_;
  const UserContentController::Channel channel = line.channel;
  controller->receive(webView_, {channel.name, std::move(*body), isMainFrame}, channel.world, reply);
}

bool ScriptBridge::isUnambiguous(const std::string& name) const {
  return std::count_if(lines_.begin(), lines_.end(),
                       [&](const auto& line) { return line->channel.name == name; }) == 1;
}

}  // namespace velto
