#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <poll.h>
#include <sys/types.h>

#include "handoff/HandoffPeer.h"

namespace velto {

/// Takes the arguments of one message; empty for a start without arguments. When it throws, the message
/// counts as refused.
using HandoffCallback = std::function<void(std::vector<std::string>)>;

struct HandoffLimits {
  std::size_t peers = 16;                      ///< At once; a further one takes the place of the oldest.
  std::chrono::milliseconds patience{2000};    ///< From connecting to the complete message.
  std::chrono::milliseconds acceptPause{100};  ///< When no descriptor is left for a further peer.
};

/// What the hand-off thread does: waits for peers, reads their messages, passes these on, answers. Sleeps
/// without a timeout while no peer is connected. Borrows its descriptors.
class HandoffLoop {
 public:
  /// `listener` does not block; `stop` becomes readable when the loop is to end; peers of anybody but `owner`
  /// are dropped.
  HandoffLoop(int listener, int stop, uid_t owner, const HandoffLimits& limits, HandoffCallback callback);

  void run();

 private:
  using TimePoint = Deadline::Clock::time_point;

  void watch();
  [[nodiscard]] int pollTimeout() const;
  void attendPeers(TimePoint now);
  void attend(HandoffPeer& peer);
  [[nodiscard]] bool passedOn(HandoffPeer& peer) const;
  void acceptPeer();

  int listener_;
  int stop_;
  uid_t owner_;
  HandoffLimits limits_;
  HandoffCallback callback_;
  std::vector<pollfd> watched_;  // the stop signal, the listener, then the peers in their order
  std::vector<HandoffPeer> peers_;
  std::optional<Deadline> acceptAgain_;
};

}  // namespace velto
