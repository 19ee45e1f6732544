#include "controlbar/DragEdgeView.h"

#include <utility>

#include "platform/ui/Window.h"

namespace velto {

DragEdgeView::DragEdgeView(std::string identifier) {
  setIdentifier(std::move(identifier));
  setCursor(Cursor::openHand);
}

bool DragEdgeView::mouseDown(const MouseEvent& event) {
  const Window* window = this->window();
  if (event.button != 1 || window == nullptr) return false;
  startMouseScreenLocation_ = event.screenLocation;
  startWindowOrigin_ = window->frame().origin;
  setCursor(Cursor::closedHand);
  return true;
}

bool DragEdgeView::mouseDragged(const MouseEvent& event) {
  Window* window = this->window();
  if (window == nullptr) return false;
  window->setFrameOrigin({startWindowOrigin_.x + event.screenLocation.x - startMouseScreenLocation_.x,
                          startWindowOrigin_.y + event.screenLocation.y - startMouseScreenLocation_.y});
  return true;
}

bool DragEdgeView::mouseUp(const MouseEvent&) {
  setCursor(Cursor::openHand);
  return true;
}

}  // namespace velto
