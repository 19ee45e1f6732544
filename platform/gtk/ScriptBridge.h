#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <webkit2/webkit2.h>

#include "platform/gtk/GObject.h"
#include "platform/gtk/MainFrameProof.h"
#include "platform/loop/MainQueue.h"
#include "platform/web/CostAllowance.h"
#include "platform/web/UserContentController.h"

namespace velto {

class GtkWebEngine;

/// Mirrors a web view's scripts and channels into its engine view, and passes on what pages post.
///
/// The engine tells a message's name but not its world. A name that is in use in two worlds at once could let
/// a page speak for scripts that it cannot see, so messages of such a name are dropped. So are those without
/// a JSON form and those that are too big. Channels of the page's world that reply have a `MainFrameProof`.
///
/// Reading messages takes time that all windows share, and most of it before the application sees them. A
/// page whose messages take too much loses its channels for a while: then they end in its own process. Each
/// further message that is too big makes the next such while longer.
class ScriptBridge final : public UserContentController::Mirror {
 public:
  /// All three outlive it.
  ScriptBridge(GtkWebEngine& engine, WebView& webView, WebKitWebView* view,
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
    bool replies;
    SignalConnection received;
    std::unique_ptr<MainFrameProof> mainFrame;
  };
  static void messageReceived(WebKitUserContentManager*, WebKitJavascriptResult* result, gpointer line);
  static gboolean messageWithReplyReceived(WebKitUserContentManager*, JSCValue* value,
                                           WebKitScriptMessageReply* reply, gpointer line);
  static void loadChanged(WebKitWebView*, WebKitLoadEvent event, gpointer self);
  void receive(const Line& line, JSCValue* value, const std::function<void(ScriptReply)>& reply);
  [[nodiscard]] std::optional<JsonValue> read(JSCValue* value);
  [[nodiscard]] bool isUnambiguous(const std::string& name) const;
  void open(const Line& line) const;
  void close(const Line& line) const;
  void pause();
  void resume();

  GtkWebEngine& engine_;
  WebView& webView_;
  GObjectPtr<WebKitUserContentManager> manager_;
  std::shared_ptr<UserContentController> controller_;
  std::vector<std::unique_ptr<Line>> lines_;
  SignalConnection loadChanged_;
  CostAllowance allowance_;
  int refusals_ = 0;
  /// The channels are closed.
  bool paused_ = false;
  WorkItem resumption_;
};

}  // namespace velto
