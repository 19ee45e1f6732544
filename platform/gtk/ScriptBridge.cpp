#include "platform/gtk/ScriptBridge.h"

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <utility>

#include "platform/gtk/GtkWebEngine.h"
#include "platform/gtk/Guard.h"
#include "platform/gtk/ScriptValue.h"

namespace velto {

namespace {

/// The engine's name of a world; null stands for the page's own.
const char* worldName(const ContentWorld& world) { return world.name.empty() ? nullptr : world.name.c_str(); }

/// Seconds.
constexpr double kMostReading = 0.1;
constexpr double kReadingPerSecond = 0.05;
/// What even the smallest message takes.
constexpr double kLeastReading = 0.00005;
/// A message that was not looked at as a whole may have taken any time. The first one is an oversight.
constexpr double kTooBig = 0.2;
constexpr int kMostDoublings = 8;

/// Seconds that this thread has worked: when the machine stands still meanwhile, no page shall pay for it.
double workedTime() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

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
      loadChanged_(view, "load-changed", G_CALLBACK(loadChanged), this),
      allowance_(kMostReading, kReadingPerSecond) {
  controller_->setMirror(this);
}

ScriptBridge::~ScriptBridge() {
  controller_->setMirror(nullptr);
  resumption_.cancel();
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
  auto line = std::make_unique<Line>(Line{*this, channel, replies, {}, nullptr});
  // The handler is connected first: a page may post as soon as the name is registered.
  const std::string signal =
      (replies ? "script-message-with-reply-received::" : "script-message-received::") + channel.name;
  const auto received = replies ? G_CALLBACK(messageWithReplyReceived) : G_CALLBACK(messageReceived);
  line->received = {manager_.get(), signal.c_str(), received, line.get()};
  if (!paused_) open(*line);
  if (replies && channel.world == ContentWorld()) {
    line->mainFrame =
        std::make_unique<MainFrameProof>(manager_.get(), channel.name, engine_.mainFrameScripts());
  }
  lines_.push_back(std::move(line));
}

void ScriptBridge::removeChannel(const UserContentController::Channel& channel) {
  const auto found =
      std::find_if(lines_.begin(), lines_.end(), [&](const auto& line) { return line->channel == channel; });
  if (found == lines_.end()) return;
  const auto line = std::move(*found);
  lines_.erase(found);
  if (!paused_) close(*line);
}

void ScriptBridge::open(const Line& line) const {
  const char* name = line.channel.name.c_str();
  const char* world = worldName(line.channel.world);
  if (line.replies) {
    webkit_user_content_manager_register_script_message_handler_with_reply(manager_.get(), name, world);
  } else if (world == nullptr) {
    webkit_user_content_manager_register_script_message_handler(manager_.get(), name);
  } else {
    webkit_user_content_manager_register_script_message_handler_in_world(manager_.get(), name, world);
  }
}

void ScriptBridge::close(const Line& line) const {
  const char* name = line.channel.name.c_str();
  if (const char* world = worldName(line.channel.world)) {
    webkit_user_content_manager_unregister_script_message_handler_in_world(manager_.get(), name, world);
  } else {
    webkit_user_content_manager_unregister_script_message_handler(manager_.get(), name);
  }
}

void ScriptBridge::pause() {
  if (std::exchange(paused_, true)) return;
  for (const auto& line : lines_) close(*line);
  const double wait = allowance_.secondsUntilFull(engine_.clock().uptime());
  resumption_ = engine_.queue().after(wait, [this] { resume(); });
}

void ScriptBridge::resume() {
  resumption_.cancel();
  if (!std::exchange(paused_, false)) return;
  for (const auto& line : lines_) open(*line);
}

void ScriptBridge::loadChanged(WebKitWebView*, WebKitLoadEvent event, gpointer data) {
  auto& self = *static_cast<ScriptBridge*>(data);
  // Before the next page's scripts look for their channels, if this one does not make a habit of it.
  if (event == WEBKIT_LOAD_STARTED && self.allowance_.isHalf(self.engine_.clock().uptime())) self.resume();
  if (event != WEBKIT_LOAD_COMMITTED) return;
  for (const auto& line : self.lines_) {
    if (line->mainFrame) line->mainFrame->forget();
  }
}

void ScriptBridge::messageReceived(WebKitUserContentManager*, WebKitJavascriptResult* result, gpointer data) {
  guarded([&] {
    const Line& line = *static_cast<Line*>(data);
    line.bridge.receive(line, webkit_javascript_result_get_js_value(result), nullptr);
  });
}

gboolean ScriptBridge::messageWithReplyReceived(WebKitUserContentManager*, JSCValue* value,
                                                WebKitScriptMessageReply* reply, gpointer data) {
  guarded([&] {
    const Line& line = *static_cast<Line*>(data);
    auto pending = std::make_shared<PendingReply>(reply, value);
    line.bridge.receive(line, value, [pending](const ScriptReply& answer) { pending->answer(answer); });
  });
  return TRUE;
}

std::optional<JsonValue> ScriptBridge::read(JSCValue* value) {
  const double began = workedTime();
  ScriptReading reading = readScriptValue(value);
  // A message without a body is one all the same.
  if (jsc_value_is_undefined(value) != FALSE) reading.json = JsonValue(JsonValue::Storage());
  double cost = kLeastReading + reading.cost + workedTime() - began;
  if (reading.isTooBig && refusals_++ > 0) {
    cost = std::max(cost, kTooBig) * (1 << std::min(refusals_, kMostDoublings));
  }
  if (!allowance_.spend(cost, engine_.clock().uptime())) pause();
  return std::move(reading.json);
}

void ScriptBridge::receive(const Line& line, JSCValue* value, const std::function<void(ScriptReply)>& reply) {
  auto body = read(value);
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
