#include "handoff/HandoffPeer.h"

#include <cerrno>

#include <sys/socket.h>

namespace velto {

FrameDecoder::State HandoffPeer::receive() {
  char piece[16384];
  while (decoder_.state() == FrameDecoder::State::wanting) {
    const ssize_t received = ::recv(socket_.get(), piece, sizeof piece, MSG_DONTWAIT);
    if (received > 0) {
      decoder_.feed({piece, static_cast<std::size_t>(received)});
    } else if (received < 0 && errno == EINTR) {
      continue;
    } else {
      if (received == 0 || errno != EAGAIN) drop();
      break;
    }
  }
  return decoder_.state();
}

void HandoffPeer::answer(bool accepted) {
  const char byte = accepted ? kAnswerAccepted : kAnswerRefused;
  while (::send(socket_.get(), &byte, 1, MSG_NOSIGNAL | MSG_DONTWAIT) < 0 && errno == EINTR) continue;
  drop();
}

}  // namespace velto
