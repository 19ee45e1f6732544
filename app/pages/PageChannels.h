#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/pages/PageWindows.h"
#include "app/pages/VeltoWindowPinBridge.h"
#include "platform/Platform.h"
#include "platform/ui/Animator.h"
#include "platform/web/UserContentController.h"

namespace velto {

/// The channels by which pages talk to the application, and the scripts that are added to every page. A
/// message that is not as it should be is dropped without a word. Main thread only.
class PageChannels : public Weakable {
 public:
  PageChannels(const Platform& platform, SessionRecording& session);

  /// One more for the web view of a new window. It may outlive this and `pageWindows`; its messages are
  /// dropped then.
  [[nodiscard]] std::shared_ptr<UserContentController> makeUserContentController(PageWindows& pageWindows);

 private:
  using Handler = void (PageChannels::*)(const WebView&, const JsonValue& body);

  void addHandlers(UserContentController& controller, const WeakPtr<PageWindows>& pageWindows);
  void addHandler(UserContentController& controller, const char* name, Handler handler);
  void dragWindow(const WebView& webView, const JsonValue& body);
  void resizeWindow(const WebView& webView, const JsonValue& body);
  void storeScroll(const WebView& webView, const JsonValue& body);
  /// Does it with the window that has the keyboard when the queue comes to it.
  void queueForKeyWindow(std::function<void(Window&)> change);
  [[nodiscard]] const std::vector<UserScript>& scripts();

  const FileManager& files_;
  std::filesystem::path resources_;
  MainQueue& mainQueue_;
  Application& application_;
  Animator animator_;
  VeltoWindowPinBridge pinBridge_;
  /// Made once: they are read from files.
  std::optional<std::vector<UserScript>> scripts_;
};

/// The address that a message on the channel "velto" asks for, if a page may open that.
std::optional<Url> requestedPage(const JsonValue& body);

}  // namespace velto
