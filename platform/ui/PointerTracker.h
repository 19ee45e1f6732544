#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/foundation/WeakPtr.h"
#include "platform/ui/Event.h"
#include "platform/ui/View.h"

namespace velto {

/// Tells views that the pointer came in or left. The pointer is in the view that it hits and in all of that
/// view's superviews; a view with a tracking margin it is in wherever that area is, even below others.
/// Nothing is in a hidden view or outside the window's content.
///
/// Outer views are entered before inner ones, and left after them. A view may do anything in its answer, what
/// ends the tracker included.
class PointerTracker {
 public:
  PointerTracker() = default;
  PointerTracker(const PointerTracker&) = delete;
  PointerTracker& operator=(const PointerTracker&) = delete;
  ~PointerTracker() { ++state_->step; }

  /// `event` is in the content's coordinates. Another content than before means another window.
  void moved(View& content, const MouseEvent& event);
  /// The pointer is in no view any more.
  void left(const MouseEvent& event = {}) { tell({}, event); }

 private:
  void tell(const std::vector<WeakPtr<View>>& now, const MouseEvent& event);

  struct State {
    /// In the order in which they were entered.
    std::vector<WeakPtr<View>> inside;
    /// Tells a step that an answer to it took the pointer elsewhere.
    std::uint64_t step = 0;
  };
  /// Shared with the step under way.
  std::shared_ptr<State> state_ = std::make_shared<State>();
};

/// The event, in the content's coordinates, as the view sees it.
MouseEvent eventSeenBy(const View& view, MouseEvent event);

}  // namespace velto
