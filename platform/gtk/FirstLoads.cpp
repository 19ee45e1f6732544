#include "platform/gtk/FirstLoads.h"

#include <utility>

namespace velto {

namespace {

/// About what a process takes to start.
constexpr double kLongestTurn = 0.15;
/// From the report that a page is complete until it is on the screen, two frames.
constexpr double kPainting = 0.033;

}  // namespace

void FirstLoads::begin(bool hasProcess, Load load) {
  if (hasProcess || !deadline_.isPending()) {
    take(std::move(load));
  } else {
    waiting_.push_back(std::move(load));
  }
}

void FirstLoads::pageCameToRest() {
  if (!deadline_.isPending() || isEnding_) return;
  endTurnAfter(kPainting);
  isEnding_ = true;
}

void FirstLoads::take(Load load) {
  if (load()) endTurnAfter(kLongestTurn);
}

void FirstLoads::endTurnAfter(double seconds) {
  isEnding_ = false;
  deadline_.cancel();
  deadline_ = queue_.after(seconds, [this] { next(); });
}

void FirstLoads::next() {
  while (!waiting_.empty() && !deadline_.isPending()) {
    Load load = std::move(waiting_.front());
    waiting_.pop_front();
    take(std::move(load));
  }
}

}  // namespace velto
