#include "controlbar/ResizeCornerView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/ui/Window.h"

namespace velto {

namespace {

bool isLeft(Corner corner) { return corner == Corner::topLeft || corner == Corner::bottomLeft; }
bool isTop(Corner corner) { return corner == Corner::topLeft || corner == Corner::topRight; }

Cursor cursorFor(Corner corner) {
  return isLeft(corner) == isTop(corner) ? Cursor::resizeNorthWestSouthEast
                                         : Cursor::resizeNorthEastSouthWest;
}

/// The size with the ratio of width to height. The growth that counts for more leads; neither side falls
/// below its least length.
Size withRatio(Size size, double ratio, Size growth, Size least) {
  const bool widthLeads = std::abs(growth.height * ratio) <= std::abs(growth.width);
  Size kept = widthLeads ? Size{size.width, size.width / ratio} : Size{size.height * ratio, size.height};
  if (kept.width < least.width) kept = {least.width, least.width / ratio};
  if (kept.height < least.height) kept = {least.height * ratio, least.height};
  return kept;
}

}  // namespace

Rect CornerDrag::frameAfter(double dx, double dy) const {
  const Size least{std::max(minSize.width, kMinimumWindowSide), std::max(minSize.height, kMinimumWindowSide)};
  const Size growth{isLeft(corner) ? -dx : dx, isTop(corner) ? dy : -dy};
  Size size{std::max(startFrame.size.width + growth.width, least.width),
            std::max(startFrame.size.height + growth.height, least.height)};
  if (aspectRatio.width > 0 && aspectRatio.height > 0) {
    size = withRatio(size, aspectRatio.width / aspectRatio.height, growth, least);
  }
  return {{isLeft(corner) ? startFrame.maxX() - size.width : startFrame.minX(),
           isTop(corner) ? startFrame.minY() : startFrame.maxY() - size.height},
          size};
}

ResizeCornerView::ResizeCornerView(Corner corner, std::string identifier) : corner_(corner) {
  setIdentifier(std::move(identifier));
  setCursor(cursorFor(corner));
}

bool ResizeCornerView::mouseDown(const MouseEvent& event) {
  const Window* window = this->window();
  if (event.button != 1 || window == nullptr) return false;
  startWindowFrame_ = window->frame();
  startMouseScreenLocation_ = event.screenLocation;
  return true;
}

bool ResizeCornerView::mouseDragged(const MouseEvent& event) {
  Window* window = this->window();
  if (window == nullptr) return false;
  const CornerDrag drag{corner_, startWindowFrame_, window->minSize(), window->contentAspectRatio()};
  window->setFrame(drag.frameAfter(event.screenLocation.x - startMouseScreenLocation_.x,
                                   event.screenLocation.y - startMouseScreenLocation_.y));
  return true;
}

}  // namespace velto
