#include "platform/gtk/MainFrameProof.h"

#include <utility>

#include "platform/gtk/Guard.h"

namespace velto {

namespace {

constexpr const char* kWorld = "velto-main-frame";

std::string textOfFile(const std::filesystem::path& path) {
  char* text = nullptr;
  gsize length = 0;
  GErrorPtr error;
  if (g_file_get_contents(path.c_str(), &text, &length, error.out()) == FALSE) {
    g_warning("%s", error->message);
    return "";
  }
  const GCharPtr kept(text);
  return {text, length};
}

/// The script's function, called.
std::string callOf(const std::string& function, const std::string& channel, const std::string& helloChannel) {
  return function + "('" + channel + "', '" + helloChannel + ":token', '" + helloChannel + ":ready')";
}

}  // namespace

MainFrameProof::Scripts MainFrameProof::Scripts::read(const std::filesystem::path& resourcesDirectory) {
  const auto folder = resourcesDirectory / "scripts";
  return {textOfFile(folder / "MainFramePage.js"), textOfFile(folder / "MainFrameHello.js")};
}

MainFrameProof::MainFrameProof(WebKitUserContentManager* manager, const std::string& channel,
                               const Scripts& scripts)
    : manager_(GObjectPtr<WebKitUserContentManager>::retain(manager)), helloChannel_(channel + "MainFrame") {
  if (scripts.page.empty() || scripts.hello.empty()) return;
  constexpr auto kFrames = WEBKIT_USER_CONTENT_INJECT_TOP_FRAME;
  constexpr auto kTime = WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START;
  const std::string page = callOf(scripts.page, channel, helloChannel_);
  const std::string hello = callOf(scripts.hello, helloChannel_, helloChannel_);
  page_.reset(webkit_user_script_new(page.c_str(), kFrames, kTime, nullptr, nullptr));
  hello_.reset(webkit_user_script_new_for_world(hello.c_str(), kFrames, kTime, kWorld, nullptr, nullptr));
  const std::string signal = "script-message-received::" + helloChannel_;
  received_ = {manager, signal.c_str(), G_CALLBACK(helloReceived), this};
  webkit_user_content_manager_register_script_message_handler_in_world(manager, helloChannel_.c_str(),
                                                                       kWorld);
  webkit_user_content_manager_add_script(manager, hello_.get());
  webkit_user_content_manager_add_script(manager, page_.get());
}

MainFrameProof::~MainFrameProof() {
  if (!page_) return;
  webkit_user_content_manager_remove_script(manager_.get(), page_.get());
  webkit_user_content_manager_remove_script(manager_.get(), hello_.get());
  webkit_user_content_manager_unregister_script_message_handler_in_world(manager_.get(),
                                                                         helloChannel_.c_str(), kWorld);
}

void MainFrameProof::helloReceived(WebKitUserContentManager*, WebKitJavascriptResult* result, gpointer self) {
  guarded([&] {
    JSCValue* token = webkit_javascript_result_get_js_value(result);
    if (jsc_value_is_string(token) == FALSE) return;
    static_cast<MainFrameProof*>(self)->token_ = textOf(GCharPtr(jsc_value_to_string(token)).get());
  });
}

bool MainFrameProof::unwrap(JsonValue& message) const {
  const JsonValue* found = message.member("token");
  const auto* token = found == nullptr ? nullptr : found->as<std::string>();
  const JsonValue* body = message.member("body");
  const std::size_t members = body == nullptr ? 1 : 2;
  const auto* object = message.as<JsonValue::Object>();
  if (token == nullptr || object->size() != members) return false;
  const bool isProof = !token_.empty() && *token == token_;
  // A message without a body is one all the same.
  message = body == nullptr ? JsonValue(JsonValue::Storage()) : JsonValue(*body);
  return isProof;
}

}  // namespace velto
