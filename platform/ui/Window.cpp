#include "platform/ui/Window.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/ui/Application.h"

namespace velto {

Window::Window(Application& application, const Rect& frame, unsigned styleMask)
    : application_(application), styleMask_(styleMask) {
  frame_ = constrained(frame);
  peer_ = application.windowSystem().makePeer(*this);
  application_.windowAdded(*this);
}

Window::~Window() {
  invalidateWeakReferences();
  application_.windowRemoved(*this);
  if (contentView_) {
    contentView_->contentOf_ = nullptr;
    contentView_->tellMovedToWindow(nullptr);
  }
  contentView_.reset();
}

Rect Window::constrained(const Rect& frame) const {
  const auto hold = [](double length, double least) {
    return std::clamp(std::isfinite(length) ? length : least, std::clamp(least, 1.0, kMaximumSide),
                      kMaximumSide);
  };
  return {frame.origin,
          {hold(frame.size.width, attributes_.minSize.width),
           hold(frame.size.height, attributes_.minSize.height)}};
}

void Window::setFrame(const Rect& frame) {
  frameAnimation_.stop();
  putFrame(frame);
}

void Window::animateFrame(const Rect& frame, const Animator& animator) {
  constexpr double kDuration = 0.2;
  const Rect from = frame_;
  const Rect to = constrained(frame);
  frameAnimation_ = animator.animate(kDuration, Animator::Curve::easeInOut, [this, from, to](double done) {
    const auto between = [done](double a, double b) {
      return done < 1 ? std::round(interpolate(a, b, done)) : b;
    };
    putFrame({{between(from.origin.x, to.origin.x), between(from.origin.y, to.origin.y)},
              {between(from.size.width, to.size.width), between(from.size.height, to.size.height)}});
  });
}

void Window::putFrame(const Rect& frame) {
  const Rect next = constrained(frame);
  if (next == frame_) return;
  takeFrame(next);
  peer_->frameChanged();
}

void Window::takeFrame(const Rect& frame) {
  const Rect old = std::exchange(frame_, frame);
  if (contentView_) contentView_->setFrame({{0, 0}, frame.size});
  if (!delegate_ || closed_) return;
  if (old.origin != frame.origin) delegate_->windowDidMove(*this);
  if (old.size != frame.size && delegate_) delegate_->windowDidResize(*this);
}

void Window::backendMovedTo(const Rect& frame) {
  if (frame != frame_) takeFrame(frame);
}

void Window::center() {
  const auto on = screen();
  if (!on) return;
  const Rect& area = on->visibleFrame;
  const double x = area.midX() - frame_.size.width * 0.5;
  const double spare = area.size.height - frame_.size.height;
  setFrameOrigin(
      {std::max(std::round(x), area.minX()), std::max(std::round(area.minY() + spare * 2 / 3), area.minY())});
}

std::optional<Screen> Window::screen() const {
  auto screens = application_.screens();
  if (screens.empty()) return std::nullopt;
  const auto shown = [this](const Screen& s) {
    const Size size = s.frame.intersection(frame_).size;
    return size.width * size.height;
  };
  return *std::max_element(screens.begin(), screens.end(),
                           [&](const Screen& a, const Screen& b) { return shown(a) < shown(b); });
}

template <class T>
void Window::change(T& field, T value) {
  if (field == value) return;
  field = std::move(value);
  peer_->attributesChanged();
}

void Window::setTitle(std::string title) { change(attributes_.title, std::move(title)); }
void Window::setLevel(int level) { change(attributes_.level, level); }
void Window::setCollectionBehavior(unsigned behavior) { change(attributes_.collectionBehavior, behavior); }
void Window::setContentAspectRatio(Size ratio) { change(attributes_.contentAspectRatio, ratio); }
void Window::setDarkAppearance(bool dark) { change(attributes_.darkAppearance, dark); }
void Window::setMovableByBackground(bool movable) { change(attributes_.movableByBackground, movable); }
void Window::setHasShadow(bool shadow) { change(attributes_.shadow, shadow); }
void Window::setAlpha(double alpha) { change(attributes_.alpha, std::clamp(alpha, 0.0, 1.0)); }
void Window::setOpaque(bool opaque) { change(attributes_.opaque, opaque); }
void Window::setIgnoresMouseEvents(bool ignores) { change(attributes_.ignoresMouseEvents, ignores); }
void Window::setIdentifier(std::string identifier) { change(attributes_.identifier, std::move(identifier)); }

void Window::setMinSize(Size size) {
  change(attributes_.minSize, size);
  setFrame(frame_);
}

int Window::grantedLevel() const { return peer_->grantedLevel(); }

void Window::setContentView(std::unique_ptr<View> view) {
  if (contentView_) {
    contentView_->contentOf_ = nullptr;
    contentView_->tellMovedToWindow(nullptr);
  }
  contentView_ = std::move(view);
  if (contentView_) {
    contentView_->contentOf_ = this;
    contentView_->setFrame({{0, 0}, frame_.size});
  }
  peer_->contentViewChanged();
  if (contentView_) contentView_->tellMovedToWindow(this);
}

bool Window::isKey() const { return application_.keyWindow() == this; }

void Window::makeKeyAndOrderFront() {
  if (closed_) return;
  visible_ = true;
  peer_->order(WindowPeer::Order::frontAndKey);
}

void Window::orderFrontRegardless() {
  if (closed_) return;
  visible_ = true;
  peer_->order(WindowPeer::Order::front);
}

void Window::orderOut() {
  visible_ = false;
  peer_->order(WindowPeer::Order::out);
}

void Window::miniaturize() {
  if (std::exchange(miniaturized_, true)) return;
  peer_->setMiniaturized(true);
}

void Window::deminiaturize() {
  if (!std::exchange(miniaturized_, false)) return;
  peer_->setMiniaturized(false);
}

void Window::zoom() {
  const auto on = screen();
  if (!on) return;
  const Rect standard = standardFrame(on->visibleFrame);
  const bool isZoomed = unzoomedFrame_ && frame_ == constrained(standard);
  const Rect next = isZoomed ? *unzoomedFrame_ : standard;
  unzoomedFrame_ = isZoomed ? std::nullopt : std::optional(frame_);
  setFrame(next);
}

/// The largest frame with the window's aspect ratio, in the middle of the area.
Rect Window::standardFrame(const Rect& area) const {
  const Size ratio = attributes_.contentAspectRatio;
  if (ratio.width <= 0 || ratio.height <= 0) return area;
  const double scale = std::min(area.size.width / ratio.width, area.size.height / ratio.height);
  const Size size{std::floor(ratio.width * scale), std::floor(ratio.height * scale)};
  return {{area.minX() + std::floor((area.size.width - size.width) / 2),
           area.minY() + std::floor((area.size.height - size.height) / 2)},
          size};
}

void Window::close() {
  if (closed_) return;
  if (delegate_ && !delegate_->windowShouldClose(*this)) return;
  closed_ = true;
  frameAnimation_.stop();
  if (delegate_) delegate_->windowWillClose(*this);
  orderOut();
  application_.windowRemoved(*this);
}

void Window::backendBecameKey() {
  if (delegate_) delegate_->windowDidBecomeKey(*this);
}

}  // namespace velto
