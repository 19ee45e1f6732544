#include "app/pages/VeltoWindowPinBridge.h"

#include "app/pages/MessageFields.h"
#include "app/windows/HovrelPanel.h"
#include "app/windows/WindowPinning.h"

namespace velto {

ScriptReply VeltoWindowPinBridge::reply(const WebView& webView, const ScriptMessage& message) const {
  auto* panel = dynamic_cast<HovrelPanel*>(webView.window());
  if (panel == nullptr || panel->isClosed() || !message.isMainFrame) {
    return {.json = std::nullopt, .error = "Only a Velto window's own page can pin it"};
  }
  const auto onTop = booleanField(message.body, "onTop");
  if (onTop && *onTop != panel->isPinned && !(*onTop && panel->unpinnedByPerson)) {
    WindowPinning::setPinned(*panel, *onTop);
    session_.scheduleSessionRecording();
  }
  return {.json = panel->isPinned ? R"({"onTop":true})" : R"({"onTop":false})", .error = std::nullopt};
}

}  // namespace velto
