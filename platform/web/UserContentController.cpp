#include "platform/web/UserContentController.h"

#include <algorithm>

namespace velto {

void UserContentController::addUserScript(UserScript script) {
  scripts_.push_back(std::move(script));
  if (mirror_ != nullptr) mirror_->addScript(scripts_.back());
}

void UserContentController::addMessageHandler(const std::string& name, ScriptMessageHandler handler,
                                              const ContentWorld& world) {
  add({{name, world}, std::move(handler), nullptr});
}

void UserContentController::addReplyHandler(const std::string& name, ScriptReplyHandler handler,
                                            const ContentWorld& world) {
  add({{name, world}, nullptr, std::move(handler)});
}

void UserContentController::add(Entry entry) {
  removeMessageHandler(entry.channel.name, entry.channel.world);
  entries_.push_back(std::move(entry));
  if (mirror_ != nullptr)
    mirror_->addChannel(entries_.back().channel, entries_.back().replyHandler != nullptr);
}

void UserContentController::removeMessageHandler(const std::string& name, const ContentWorld& world) {
  const Channel channel{name, world};
  if (std::erase_if(entries_, [&](const Entry& e) { return e.channel == channel; }) > 0 &&
      mirror_ != nullptr) {
    mirror_->removeChannel(channel);
  }
}

std::vector<UserContentController::Channel> UserContentController::channels() const {
  std::vector<Channel> all;
  for (const Entry& entry : entries_) all.push_back(entry.channel);
  return all;
}

void UserContentController::setMirror(Mirror* mirror) {
  mirror_ = mirror;
  if (mirror_ == nullptr) return;
  for (const UserScript& script : scripts_) mirror_->addScript(script);
  for (const Entry& entry : entries_) mirror_->addChannel(entry.channel, entry.replyHandler != nullptr);
}

void UserContentController::receive(WebView& webView, const ScriptMessage& message, const ContentWorld& world,
                                    const std::function<void(ScriptReply)>& reply) {
  const Channel channel{message.name, world};
  const auto found =
      std::find_if(entries_.begin(), entries_.end(), [&](const Entry& e) { return e.channel == channel; });
  if (found == entries_.end()) {
    if (reply) reply({std::nullopt, "No such channel"});
    return;
  }
  // A handler may remove itself while it runs.
  const Entry entry = *found;
  if (entry.replyHandler) {
    entry.replyHandler(
        webView, message, reply ? reply : [](const ScriptReply&) {});
  } else {
    entry.handler(webView, message);
    if (reply) reply({});
  }
}

}  // namespace velto
