#include "handoff/HandoffClient.h"

#include <cerrno>

#include <poll.h>
#include <sys/socket.h>

#include "handoff/Frame.h"
#include "handoff/HandoffError.h"
#include "handoff/SocketAddress.h"

namespace velto {

namespace {

constexpr std::chrono::milliseconds kFullQueuePause{10};

HandoffError noAnswer() { return HandoffError("Velto is running but does not answer; end it and try again"); }

}  // namespace

std::optional<HandoffClient> HandoffClient::connect(const RuntimeDirectory& directory,
                                                    std::chrono::milliseconds patience) {
  const Deadline deadline(patience);
  OwnedDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!socket.valid()) throw HandoffError::fromErrno("cannot make a socket", errno);

  const SocketAddress address(directory);
  while (::connect(socket.get(), address.get(), SocketAddress::size()) != 0) {
    if (errno == ECONNREFUSED || errno == ENOENT) return std::nullopt;
    if (errno == EINTR) continue;
    if (errno != EAGAIN) throw HandoffError::fromErrno("cannot reach Velto in " + directory.path(), errno);
    if (deadline.passed()) throw noAnswer();
    deadline.rest(kFullQueuePause);
  }
  return HandoffClient(std::move(socket), deadline);
}

bool HandoffClient::deliver(std::string_view frame) const {
  send(frame);
  const std::optional<char> answered = answer();
  if (!answered) return false;
  if (*answered != kAnswerAccepted) throw HandoffError("Velto refused the arguments");
  return true;
}

void HandoffClient::send(std::string_view frame) const {
  while (!frame.empty()) {
    const ssize_t sent = ::send(socket_.get(), frame.data(), frame.size(), MSG_NOSIGNAL);
    if (sent >= 0) {
      frame.remove_prefix(static_cast<std::size_t>(sent));
    } else if (errno == EAGAIN) {
      await(POLLOUT);
    } else if (errno == EPIPE || errno == ECONNRESET) {
      return;  // An answer may have come before the other side hung up.
    } else if (errno != EINTR) {
      throw HandoffError::fromErrno("cannot send to Velto", errno);
    }
  }
}

std::optional<char> HandoffClient::answer() const {
  for (;;) {
    char byte = 0;
    const ssize_t received = ::recv(socket_.get(), &byte, 1, 0);
    if (received == 1) return byte;
    if (received == 0 || errno == ECONNRESET) return std::nullopt;
    if (errno == EAGAIN) {
      await(POLLIN);
    } else if (errno != EINTR) {
      throw HandoffError::fromErrno("cannot read Velto's answer", errno);
    }
  }
}

void HandoffClient::await(short events) const {
  if (!deadline_.awaits(socket_.get(), events)) throw noAnswer();
}

}  // namespace velto
