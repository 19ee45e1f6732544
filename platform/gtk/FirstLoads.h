#pragma once

#include <deque>
#include <functional>

#include "platform/loop/MainQueue.h"

namespace velto {

/// The order in which web views load their first page. Each such load starts a process, which holds the main
/// thread for some milliseconds and a processor for longer. They take turns, so that of many windows the
/// first has its page as fast as a single one, and none waits for the processes of the others to be there.
///
/// A turn ends when a page has come to rest, and at the latest after a moment.
class FirstLoads {
 public:
  /// Gives false when there is nothing to load any more.
  using Load = std::move_only_function<bool()>;

  explicit FirstLoads(MainQueue& queue) : queue_(queue) {}
  FirstLoads(const FirstLoads&) = delete;
  FirstLoads& operator=(const FirstLoads&) = delete;
  ~FirstLoads() { deadline_.cancel(); }

  /// Runs it when it is its turn, at once if nobody has it. A load that `hasProcess` never waits.
  void begin(bool hasProcess, Load load);
  void pageCameToRest();

 private:
  void take(Load load);
  void next();
  void endTurnAfter(double seconds);

  MainQueue& queue_;
  std::deque<Load> waiting_;
  /// Pending while somebody has the turn.
  WorkItem deadline_;
  /// The turn is about to end, whatever else comes to rest.
  bool isEnding_ = false;
};

}  // namespace velto
