#include "app/windows/HovrelPanel.h"

#include <utility>

namespace velto {

bool HovrelPanel::keyDown(const KeyEvent& event) {
  if (event.key != Key::escape) return Panel::keyDown(event);
  const auto previous = std::exchange(lastEscapeTime_, event.time);
  if (!previous || event.time.seconds - previous->seconds >= kDoubleEscapeInterval)
    return Panel::keyDown(event);
  lastEscapeTime_.reset();
  if (controlBarView) {
    controlBarView->expandControls();
    controlBarView->openAddressField(std::nullopt);
  }
  return true;
}

bool HovrelPanel::performKeyEquivalent(const KeyEvent& event) {
  if (controlBarView && controlBarView->takeKeyEquivalent(event)) return true;
  return Panel::performKeyEquivalent(event);
}

void HovrelPanel::focusPendingInitialAddress() {
  if (!pendingInitialAddress || !controlBarView) return;
  controlBarView->expandControls();
  if (controlBarView->openAddressField(pendingInitialAddress)) pendingInitialAddress.reset();
}

}  // namespace velto
