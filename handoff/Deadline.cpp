#include "handoff/Deadline.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <thread>

#include <poll.h>

namespace velto {

int Deadline::millisecondsLeft() const {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(moment_ - Clock::now()).count();
  return static_cast<int>(std::clamp<decltype(left)>(left, 0, std::numeric_limits<int>::max()));
}

bool Deadline::awaits(int descriptor, short events) const {
  pollfd watched{descriptor, events, 0};
  for (;;) {
    const int ready = ::poll(&watched, 1, millisecondsLeft());
    if (ready > 0) return true;
    if (ready == 0 && passed()) return false;
    if (ready < 0 && errno != EINTR) return false;
  }
}

void Deadline::rest(std::chrono::milliseconds pause) const {
  std::this_thread::sleep_for(std::min(pause, std::chrono::milliseconds(millisecondsLeft())));
}

}  // namespace velto
