#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include <webkit2/webkit2.h>

#include "platform/foundation/Json.h"
#include "platform/gtk/GObject.h"

namespace velto {

/// Tells for one channel of the page's world which of its messages come from the main frame, which the engine
/// does not say.
///
/// A script at the start of each main frame wraps the channel so that it posts `{token, body}`. The token is
/// random, and reaches the application over a second channel that only a world of the application's own can
/// post to. It is good until the next page is committed. Frames see the channel without the wrapper.
class MainFrameProof {
 public:
  /// What the scripts are; read once for all web views. Without them nothing is proved.
  struct Scripts {
    std::string page;
    std::string hello;
    static Scripts read(const std::filesystem::path& resourcesDirectory);
  };

  MainFrameProof(WebKitUserContentManager* manager, const std::string& channel, const Scripts& scripts);
  MainFrameProof(const MainFrameProof&) = delete;
  MainFrameProof& operator=(const MainFrameProof&) = delete;
  ~MainFrameProof();

  /// Another page takes the place of the one that is shown.
  void forget() { token_.clear(); }
  /// Takes the message out of its wrapper; whether that proves that it is from the main frame.
  bool unwrap(JsonValue& message) const;

 private:
  struct Unref {
    void operator()(WebKitUserScript* script) const { webkit_user_script_unref(script); }
  };
  using UserScript = std::unique_ptr<WebKitUserScript, Unref>;
  static void helloReceived(WebKitUserContentManager*, WebKitJavascriptResult* result, gpointer self);

  GObjectPtr<WebKitUserContentManager> manager_;
  std::string helloChannel_;
  UserScript page_;
  UserScript hello_;
  std::string token_;
  SignalConnection received_;
};

}  // namespace velto
