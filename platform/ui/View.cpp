#include "platform/ui/View.h"

#include <algorithm>
#include <utility>

#include "platform/ui/Window.h"

namespace velto {

View::~View() { invalidateWeakReferences(); }

void View::setFrame(const Rect& frame) {
  if (frame == frame_) return;
  const Size old = frame_.size;
  frame_ = frame;
  if (old != frame.size) {
    for (const auto& subview : subviews_) subview->followSuperview(old, frame.size);
  }
  if (peer_) peer_->frameChanged();
  if (old != frame.size) didResize();
}

namespace {

/// One axis of autoresizing: the growth is shared in equal parts by the margins and the side that may
/// stretch.
void stretch(double growth, bool before, bool side, bool after, double& origin, double& length) {
  const int parts = int{before} + int{side} + int{after};
  if (parts == 0) return;
  const double share = growth / parts;
  if (before) origin += share;
  if (side) length += share;
}

}  // namespace

void View::followSuperview(Size from, Size to) {
  Rect next = frame_;
  stretch(to.width - from.width, autoresizing.minXMargin, autoresizing.width, autoresizing.maxXMargin,
          next.origin.x, next.size.width);
  stretch(to.height - from.height, autoresizing.minYMargin, autoresizing.height, autoresizing.maxYMargin,
          next.origin.y, next.size.height);
  setFrame(next);
}

Window* View::window() const {
  const View* root = this;
  while (root->superview_ != nullptr) root = root->superview_;
  return root->contentOf_;
}

void View::insertSubview(std::unique_ptr<View> view) {
  view->removeFromSuperview();
  view->superview_ = this;
  View& added = *view;
  subviews_.push_back(std::move(view));
  if (peer_) peer_->subviewsChanged();
  if (Window* window = this->window()) added.tellMovedToWindow(window);
}

std::unique_ptr<View> View::removeFromSuperview() {
  if (superview_ == nullptr) return nullptr;
  auto& siblings = superview_->subviews_;
  const auto found =
      std::find_if(siblings.begin(), siblings.end(), [this](const auto& v) { return v.get() == this; });
  std::unique_ptr<View> self = std::move(*found);
  siblings.erase(found);
  View* parent = std::exchange(superview_, nullptr);
  if (parent->peer_) parent->peer_->subviewsChanged();
  if (parent->window() != nullptr) tellMovedToWindow(nullptr);
  return self;
}

void View::tellMovedToWindow(Window* window) {
  if (window == nullptr) peer_.reset();
  // Those who are told may add views, which are told then and there, and remove others.
  std::vector<WeakPtr<View>> before;
  for (const auto& subview : subviews_) before.emplace_back(*subview);
  didMoveToWindow(window);
  for (const auto& subview : before) {
    if (subview && subview->superview_ == this) subview->tellMovedToWindow(window);
  }
}

void View::setHidden(bool hidden) {
  if (std::exchange(hidden_, hidden) != hidden && peer_) peer_->appearanceChanged();
}

void View::setAlpha(double alpha) {
  const double held = std::clamp(alpha, 0.0, 1.0);
  if (std::exchange(alpha_, held) != held && peer_) peer_->appearanceChanged();
}

void View::setPassesPointerThrough(bool passes) {
  if (std::exchange(passesPointerThrough_, passes) != passes && peer_) peer_->appearanceChanged();
}

void View::setCursor(Cursor cursor) {
  if (std::exchange(cursor_, cursor) != cursor && peer_) peer_->appearanceChanged();
}

void View::setIdentifier(std::string identifier) {
  identifier_ = std::move(identifier);
  if (peer_) peer_->appearanceChanged();
}

void View::setAccessibilityLabel(std::string label) {
  accessibilityLabel_ = std::move(label);
  if (peer_) peer_->appearanceChanged();
}

View* View::hitTest(Point point) {
  if (hidden_ || !frame_.contains(point)) return nullptr;
  const Point inside{point.x - frame_.origin.x, point.y - frame_.origin.y};
  for (auto subview = subviews_.rbegin(); subview != subviews_.rend(); ++subview) {
    if (View* hit = (*subview)->hitTest(inside)) return hit;
  }
  return passesPointerThrough_ ? nullptr : this;
}

Point View::convertToContent(Point point) const {
  for (const View* view = this; view->superview_ != nullptr; view = view->superview_) {
    point.x += view->frame_.origin.x;
    point.y += view->frame_.origin.y;
  }
  return point;
}

void View::setNeedsDisplay() {
  if (peer_) peer_->needsDisplay();
}

void View::render(const Cairo::RefPtr<Cairo::Context>& context) {
  if (hidden_ || alpha_ <= 0) return;
  context->save();
  context->rectangle(0, 0, frame_.size.width, frame_.size.height);
  context->clip();
  if (alpha_ < 1) context->push_group();
  context->save();
  draw(context);
  context->restore();
  for (const auto& subview : subviews_) {
    context->save();
    context->translate(subview->frame_.origin.x, subview->frame_.origin.y);
    subview->render(context);
    context->restore();
  }
  if (alpha_ < 1) {
    context->pop_group_to_source();
    context->paint_with_alpha(alpha_);
  }
  context->restore();
}

}  // namespace velto
