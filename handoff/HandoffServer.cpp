#include "handoff/HandoffServer.h"

#include <cerrno>
#include <csignal>
#include <stdexcept>

#include <fcntl.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/stat.h>

#include "handoff/HandoffError.h"
#include "handoff/SocketAddress.h"

namespace velto {

namespace {

constexpr char kThreadName[] = "velto-handoff";

/// Signals are the main thread's: a thread started while this lives takes none.
class SignalsHeldBack {
 public:
  SignalsHeldBack() {
    sigset_t all;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  SignalsHeldBack(const SignalsHeldBack&) = delete;
  SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;
  ~SignalsHeldBack() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

}  // namespace

HandoffServer::HandoffServer(RuntimeDirectory directory, const ElectionLock& /*lock*/,
                             const HandoffLimits& limits)
    : directory_(std::move(directory)),
      limits_(limits),
      listener_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)),
      stop_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!listener_.valid() || !stop_.valid()) throw HandoffError::fromErrno("cannot make a socket", errno);
  bindListener();
}

HandoffServer::~HandoffServer() {
  if (thread_.joinable()) {
    ::eventfd_write(stop_.get(), 1);
    thread_.join();
  }
  removeSocket();
}

void HandoffServer::serve(HandoffCallback callback) {
  if (thread_.joinable()) throw std::logic_error("the hand-off is being served already");
  const SignalsHeldBack heldBack;
  thread_ = std::thread([loop = HandoffLoop(listener_.get(), stop_.get(), directory_.owner(), limits_,
                                            std::move(callback))]() mutable { loop.run(); });
  ::pthread_setname_np(thread_.native_handle(), kThreadName);
}

void HandoffServer::bindListener() {
  const std::string trouble = "cannot listen in " + directory_.path();
  if (::unlinkat(directory_.descriptor(), kSocketName, 0) != 0 && errno != ENOENT) {
    throw HandoffError::fromErrno(trouble, errno);
  }
  // Before bind, the mode of the descriptor is the mode that the socket's file will get.
  const SocketAddress address(directory_);
  struct stat status {};
  if (::fchmod(listener_.get(), S_IRUSR | S_IWUSR) != 0 ||
      ::bind(listener_.get(), address.get(), SocketAddress::size()) != 0 ||
      ::fstatat(directory_.descriptor(), kSocketName, &status, AT_SYMLINK_NOFOLLOW) != 0 ||
      ::listen(listener_.get(), SOMAXCONN) != 0) {
    throw HandoffError::fromErrno(trouble, errno);
  }
  device_ = status.st_dev;
  inode_ = status.st_ino;
}

void HandoffServer::removeSocket() const try {
  const ElectionLock lock(directory_);
  struct stat status {};
  if (::fstatat(directory_.descriptor(), kSocketName, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
      status.st_dev == device_ && status.st_ino == inode_) {
    ::unlinkat(directory_.descriptor(), kSocketName, 0);
  }
} catch (const HandoffError&) {
  // The socket stays behind without a listener; the next start takes its place.
}

}  // namespace velto
