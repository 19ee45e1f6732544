#include "app/pages/PageChannels.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "app/launch/PlayerUrl.h"
#include "app/pages/MessageFields.h"
#include "app/pages/WindowMotion.h"
#include "app/windows/HovrelPanel.h"

namespace velto {

namespace {

struct ScriptFile {
  const char* name;
  bool mainFrameOnly;
};
constexpr ScriptFile kScriptFiles[] = {
    {"video-button-style.js", false},
    {"video-button.js", false},
    {"scroll-reporter.js", true},
};

/// Truncated towards zero; absent when it is not there or beyond all integers.
std::optional<std::int64_t> wholeField(const JsonValue& body, std::string_view key) {
  constexpr double kBeyond = 9223372036854775808.0;
  const auto number = numberField(body, key);
  if (!number || !(std::fabs(*number) < kBeyond)) return std::nullopt;
  return static_cast<std::int64_t>(*number);
}

bool asksForVideo(const JsonValue& body) {
  return textField(body, "player") == "youtube" && textField(body, "videoId");
}

}  // namespace

std::optional<Url> requestedPage(const JsonValue& body) {
  if (asksForVideo(body)) {
    return playerLaunchURL(*textField(body, "videoId"), booleanField(body, "playing").value_or(false),
                           wholeField(body, "t"));
  }
  const auto text = textField(body, "url");
  auto url = text ? Url::parse(*text) : std::nullopt;
  if (!url) return std::nullopt;
  const bool isVideo = isPlayerURL(*url) && isVideoId(url->queryValue("v").value_or(""));
  return isVideo || mayPageOpen(*url) ? url : std::nullopt;
}

PageChannels::PageChannels(const Platform& platform, SessionRecording& session)
    : files_(platform.files),
      resources_(platform.environment.resourcesDirectory),
      mainQueue_(platform.mainQueue),
      application_(platform.application),
      animator_(platform.clock, platform.mainQueue, platform.application.windowSystem()),
      pinBridge_(session) {}

std::shared_ptr<UserContentController> PageChannels::makeUserContentController(PageWindows& pageWindows) {
  auto controller = std::make_shared<UserContentController>();
  addHandlers(*controller, pageWindows);
  for (const UserScript& script : scripts()) controller->addUserScript(script);
  return controller;
}

void PageChannels::addHandlers(UserContentController& controller, const WeakPtr<PageWindows>& pageWindows) {
  const WeakPtr<PageChannels> self(*this);
  controller.addMessageHandler("velto", [pageWindows](WebView& webView, const ScriptMessage& message) {
    const auto url = requestedPage(message.body);
    if (url && pageWindows) pageWindows->openByMessage(webView, *url);
  });
  addHandler(controller, "windowDrag", &PageChannels::dragWindow);
  addHandler(controller, "windowResize", &PageChannels::resizeWindow);
  addHandler(controller, "veltoScroll", &PageChannels::storeScroll);
  controller.addReplyHandler("veltoWindow", [self](WebView& webView, const ScriptMessage& message,
                                                   const std::function<void(ScriptReply)>& answer) {
    if (self) {
      answer(self->pinBridge_.reply(webView, message));
    } else {
      answer({.json = std::nullopt, .error = "The application is ending"});
    }
  });
}

void PageChannels::addHandler(UserContentController& controller, const char* name, Handler handler) {
  controller.addMessageHandler(
      name, [self = WeakPtr<PageChannels>(*this), handler](WebView& webView, const ScriptMessage& message) {
        if (self) (self.get()->*handler)(webView, message.body);
      });
}

void PageChannels::dragWindow(const WebView&, const JsonValue& body) {
  const auto deltaX = numberField(body, "deltaX");
  const auto deltaY = numberField(body, "deltaY");
  if (!deltaX || !deltaY) return;
  queueForKeyWindow([this, x = *deltaX, y = *deltaY](Window& window) {
    window.setFrame(heldOnScreens(draggedFrame(window.frame(), x, y), application_.screens()));
  });
}

void PageChannels::resizeWindow(const WebView&, const JsonValue& body) {
  const auto width = numberField(body, "width");
  const auto height = numberField(body, "height");
  if (!width || !height) return;
  queueForKeyWindow([this, size = Size{*width, *height}](Window& window) {
    const Rect resized = resizedFrame(window.frame(), size, window.minSize());
    window.animateFrame(heldOnScreens(resized, application_.screens()), animator_);
  });
}

void PageChannels::storeScroll(const WebView& webView, const JsonValue& body) {
  const auto x = numberField(body, "x");
  const auto y = numberField(body, "y");
  auto* panel = dynamic_cast<HovrelPanel*>(webView.window());
  if (x && y && panel != nullptr) panel->lastKnownScroll = LayoutScroll{*x, *y};
}

void PageChannels::queueForKeyWindow(std::function<void(Window&)> change) {
  mainQueue_.async([self = WeakPtr<PageChannels>(*this), change = std::move(change)] {
    Window* window = self ? self->application_.keyWindow() : nullptr;
    if (window != nullptr) change(*window);
  });
}

const std::vector<UserScript>& PageChannels::scripts() {
  if (scripts_) return *scripts_;
  scripts_.emplace();
  for (const auto& [name, mainFrameOnly] : kScriptFiles) {
    auto source = files_.readIfPossible(resources_ / "scripts" / name);
    if (!source) continue;
    scripts_->push_back({.source = std::move(*source),
                         .time = UserScript::Time::documentEnd,
                         .mainFrameOnly = mainFrameOnly,
                         .world = {}});
  }
  return *scripts_;
}

}  // namespace velto
