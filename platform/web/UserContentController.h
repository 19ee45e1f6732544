#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/WeakPtr.h"
#include "platform/web/WebTypes.h"

namespace velto {

class WebView;

/// The value or the error that a page's script gets for a message that asks for a reply.
struct ScriptReply {
  /// JSON text of the value; absent for none.
  std::optional<std::string> json;
  std::optional<std::string> error;
};

using ScriptMessageHandler = std::function<void(WebView&, const ScriptMessage&)>;
using ScriptReplyHandler =
    std::function<void(WebView&, const ScriptMessage&, std::function<void(ScriptReply)>)>;

/// The scripts of one web view's pages and the channels by which they talk to the application. Its web view
/// mirrors every change into the engine. Main thread only.
class UserContentController : public Weakable {
 public:
  struct Channel {
    std::string name;
    ContentWorld world;
    bool operator==(const Channel&) const = default;
  };
  /// The engine's side; it is told of what is there already when it is set.
  class Mirror {
   public:
    virtual ~Mirror() = default;
    virtual void addScript(const UserScript& script) = 0;
    virtual void addChannel(const Channel& channel, bool replies) = 0;
    virtual void removeChannel(const Channel& channel) = 0;
  };

  void addUserScript(UserScript script);
  /// A second handler of one name and world replaces the first.
  void addMessageHandler(const std::string& name, ScriptMessageHandler handler,
                         const ContentWorld& world = {});
  void addReplyHandler(const std::string& name, ScriptReplyHandler handler, const ContentWorld& world = {});
  /// Nothing happens when there is none.
  void removeMessageHandler(const std::string& name, const ContentWorld& world = {});

  [[nodiscard]] const std::vector<UserScript>& userScripts() const { return scripts_; }
  [[nodiscard]] std::vector<Channel> channels() const;

  /// @name For the engine
  /// @{
  void setMirror(Mirror* mirror);
  /// A message for a channel that is gone, or that answers nobody, is dropped with an error as its reply.
  void receive(WebView& webView, const ScriptMessage& message, const ContentWorld& world,
               const std::function<void(ScriptReply)>& reply);
  /// @}

 private:
  struct Entry {
    Channel channel;
    ScriptMessageHandler handler;
    ScriptReplyHandler replyHandler;
  };
  void add(Entry entry);

  std::vector<UserScript> scripts_;
  std::vector<Entry> entries_;
  Mirror* mirror_ = nullptr;
};

}  // namespace velto
