#include "handoff/HandoffLoop.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <limits>
#include <thread>

#include <sys/socket.h>

namespace velto {

namespace {

constexpr std::size_t kStop = 0;
constexpr std::size_t kListener = 1;
constexpr std::size_t kFirstPeer = 2;

std::optional<uid_t> peerUser(const OwnedDescriptor& socket) {
  ucred credentials{};
  socklen_t size = sizeof credentials;
  if (::getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0) return std::nullopt;
  return credentials.uid;
}

}  // namespace

HandoffLoop::HandoffLoop(int listener, int stop, uid_t owner, const HandoffLimits& limits,
                         HandoffCallback callback)
    : listener_(listener), stop_(stop), owner_(owner), limits_(limits), callback_(std::move(callback)) {
  watched_.reserve(kFirstPeer + limits_.peers);
  peers_.reserve(limits_.peers);
}

void HandoffLoop::run() {
  for (;;) {
    watch();
    if (::poll(watched_.data(), watched_.size(), pollTimeout()) < 0) {
      if (errno != EINTR) std::this_thread::sleep_for(limits_.acceptPause);
      continue;
    }
    if (watched_[kStop].revents != 0) return;
    // Taken once, before any callback: the time that a callback takes is not held against the other peers.
    attendPeers(Deadline::Clock::now());
    if (acceptAgain_ && acceptAgain_->passed()) acceptAgain_.reset();
    if (watched_[kListener].revents != 0) acceptPeer();
  }
}

void HandoffLoop::watch() {
  watched_.clear();
  watched_.push_back({stop_, POLLIN, 0});
  watched_.push_back({acceptAgain_ ? -1 : listener_, POLLIN, 0});
  for (const HandoffPeer& peer : peers_) watched_.push_back({peer.descriptor(), POLLIN, 0});
}

int HandoffLoop::pollTimeout() const {
  std::optional<TimePoint> next;
  if (acceptAgain_) next = acceptAgain_->moment();
  for (const HandoffPeer& peer : peers_) next = std::min(next.value_or(TimePoint::max()), peer.deadline());
  if (!next) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(*next - Deadline::Clock::now()).count();
  return static_cast<int>(std::clamp<decltype(left)>(left, 0, std::numeric_limits<int>::max()));
}

void HandoffLoop::attendPeers(TimePoint now) {
  for (std::size_t index = 0; index < peers_.size(); ++index) {
    HandoffPeer& peer = peers_[index];
    if (watched_[kFirstPeer + index].revents != 0) attend(peer);
    if (peer.connected() && peer.deadline() <= now) peer.drop();
  }
  std::erase_if(peers_, [](const HandoffPeer& peer) { return !peer.connected(); });
}

void HandoffLoop::attend(HandoffPeer& peer) try {
  switch (peer.receive()) {
    case FrameDecoder::State::wanting:
      return;
    case FrameDecoder::State::refused:
      return peer.answer(false);
    case FrameDecoder::State::complete:
      return peer.answer(passedOn(peer));
  }
} catch (const std::exception&) {
  peer.drop();  // out of memory: this peer's message is lost, the others' are not
}

bool HandoffLoop::passedOn(HandoffPeer& peer) const try {
  callback_(peer.takeArguments());
  return true;
} catch (const std::exception&) {
  return false;
}

void HandoffLoop::acceptPeer() {
  OwnedDescriptor socket(::accept4(listener_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
  if (!socket.valid()) {
    const bool peerGone = errno == EAGAIN || errno == EINTR || errno == ECONNABORTED;
    if (!peerGone) acceptAgain_.emplace(limits_.acceptPause);
    return;
  }
  if (peerUser(socket) != owner_) return;
  // The oldest has had its turn since it came and did not use it, so silent peers cannot keep others waiting.
  if (peers_.size() == limits_.peers) peers_.erase(peers_.begin());
  peers_.emplace_back(std::move(socket), Deadline(limits_.patience));
}

}  // namespace velto
