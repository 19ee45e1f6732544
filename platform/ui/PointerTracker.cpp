#include "platform/ui/PointerTracker.h"

#include <algorithm>

namespace velto {

namespace {

bool holds(const std::vector<WeakPtr<View>>& views, const WeakPtr<View>& view) {
  return std::find(views.begin(), views.end(), view) != views.end();
}

bool isAncestorOrSelf(const View& view, const View* of) {
  while (of != nullptr && of != &view) of = of->superview();
  return of == &view;
}

bool isInTrackingArea(const View& view, Point location) {
  const double margin = *view.trackingMargin();
  const Size size = view.frame().size;
  return Rect{{-margin, -margin}, {size.width + 2 * margin, size.height + 2 * margin}}.contains(location);
}

/// The views at and below `view` that the pointer is in, outer ones first. `location` is in the view's
/// coordinates.
void collect(View& view, Point location, const View* hit, std::vector<WeakPtr<View>>& found) {
  if (view.isHidden()) return;
  const bool inside = view.trackingMargin() ? isInTrackingArea(view, location) : isAncestorOrSelf(view, hit);
  if (inside) found.emplace_back(view);
  for (const auto& subview : view.subviews()) {
    const Point origin = subview->frame().origin;
    collect(*subview, {location.x - origin.x, location.y - origin.y}, hit, found);
  }
}

}  // namespace

MouseEvent eventSeenBy(const View& view, MouseEvent event) {
  const Point origin = view.convertToContent({0, 0});
  event.location = {event.location.x - origin.x, event.location.y - origin.y};
  return event;
}

void PointerTracker::moved(View& content, const MouseEvent& event) {
  std::vector<WeakPtr<View>> now;
  if (content.bounds().contains(event.location)) {
    const Point origin = content.frame().origin;
    const View* const hit = content.hitTest({event.location.x + origin.x, event.location.y + origin.y});
    collect(content, event.location, hit, now);
  }
  tell(now, event);
}

void PointerTracker::tell(const std::vector<WeakPtr<View>>& now, const MouseEvent& event) {
  const auto state = state_;
  const auto step = ++state->step;
  const auto before = state->inside;
  for (auto view = before.rbegin(); view != before.rend() && step == state->step; ++view) {
    if (*view && holds(now, *view)) continue;
    std::erase(state->inside, *view);
    if (*view) (*view)->mouseExited(eventSeenBy(**view, event));
  }
  for (auto view = now.begin(); view != now.end() && step == state->step; ++view) {
    if (!*view || holds(state->inside, *view)) continue;
    state->inside.push_back(*view);
    (*view)->mouseEntered(eventSeenBy(**view, event));
  }
}

}  // namespace velto
