#pragma once

#include <memory>
#include <string>
#include <vector>

#include <webkit2/webkit2.h>

#include "platform/gtk/GObject.h"
#include "platform/web/UserContentController.h"

namespace velto {

/// Mirrors a web view's scripts and channels into its engine view, and passes on what pages post.
///
/// The engine tells a message's name but not its world. A name that is in use in two worlds at once could let
/// a page speak for scripts that it cannot see, so messages of such a name are dropped. So are those without
/// a JSON form and those above a MiB.
class ScriptBridge final : public UserContentController::Mirror {
 public:
  ScriptBridge(WebView& webView, WebKitUserContentManager* manager,
               std::shared_ptr<UserContentController> controller);
  ScriptBridge(const ScriptBridge&) = delete;
  ScriptBridge& operator=(const ScriptBridge&) = delete;
  ~ScriptBridge() override;

  void addScript(const UserScript& script) override;
  void addChannel(const UserContentController::Channel& channel, bool replies) override;
  void removeChannel(const UserContentController::Channel& channel) override;

 private:
  struct Line {
    ScriptBridge& bridge;
    UserContentController::Channel channel;
    SignalConnection received;
  };
  static void messageReceived(WebKitUserContentManager*, WebKitJavascriptResult* result, gpointer line);
  static gboolean messageWithReplyReceived(WebKitUserContentManager*, JSCValue* value,
                                           WebKitScriptMessageReply* reply, gpointer line);
  void receive(const UserContentController::Channel& channel, JSCValue* value,
               const std::function<void(ScriptReply)>& reply);
  [[nodiscard]] bool isUnambiguous(const std::string& name) const;

  WebView& webView_;
  GObjectPtr<WebKitUserContentManager> manager_;
  std::shared_ptr<UserContentController> controller_;
  std::vector<std::unique_ptr<Line>> lines_;
};

}  // namespace velto
