#include "app/windows/WindowPinning.h"

#include <string>
#include <utility>

namespace velto {

void WindowPinning::setPinned(HovrelPanel& panel, bool pinned) {
  const bool changed = std::exchange(panel.isPinned, pinned) != pinned;
  panel.setLevel(pinned ? kFloatingWindowLevel : kNormalWindowLevel);
  if (pinned) panel.orderFrontRegardless();
  if (!changed || !panel.webView) return;
  panel.webView->evaluateJavaScript(
      std::string("window.dispatchEvent(new CustomEvent('veltowindow', {detail: {onTop: ") +
      (pinned ? "true" : "false") + "}})); undefined");
}

void WindowPinning::toggleKeepOnTop() {
  HovrelPanel* panel = windows_.keyPanel();
  if (panel == nullptr) return;
  panel->unpinnedByPerson = panel->isPinned;
  setPinned(*panel, !panel->isPinned);
  session_.scheduleSessionRecording();
}

void WindowPinning::unpinAllWindows() {
  for (const auto& panel : windows_.panels()) {
    if (!panel->isPinned) continue;
    panel->unpinnedByPerson = true;
    setPinned(*panel, false);
  }
  session_.scheduleSessionRecording();
}

}  // namespace velto
