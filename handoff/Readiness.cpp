#include "handoff/Readiness.h"

#include <cerrno>
#include <charconv>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/stat.h>

#include "handoff/OneLine.h"

namespace velto {

namespace {

OwnedDescriptor pipeFrom(std::string_view text) {
  int descriptor = -1;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, descriptor);
  if (error != std::errc() || rest != end || descriptor <= STDERR_FILENO) return {};

  struct stat status {};
  if (::fstat(descriptor, &status) != 0 || !S_ISFIFO(status.st_mode)) return {};
  if ((::fcntl(descriptor, F_GETFL) & O_ACCMODE) != O_WRONLY) return {};
  if (::fcntl(descriptor, F_SETFD, FD_CLOEXEC) != 0) return {};
  return OwnedDescriptor(descriptor);
}

/// Writes at most PIPE_BUF bytes, all or nothing, and without waiting. A starter that has gone away must not
/// end this process by SIGPIPE, and a pipe has no flag against it.
void writeQuietly(const OwnedDescriptor& pipe, const std::string& text) {
  pollfd room{pipe.get(), POLLOUT, 0};
  if (::poll(&room, 1, 0) != 1) return;

  sigset_t brokenPipe;
  sigset_t before;
  sigset_t pending;
  sigemptyset(&brokenPipe);
  sigaddset(&brokenPipe, SIGPIPE);
  ::pthread_sigmask(SIG_BLOCK, &brokenPipe, &before);
  sigpending(&pending);
  ssize_t written = 0;
  do written = ::write(pipe.get(), text.data(), text.size());
  while (written < 0 && errno == EINTR);
  if (written < 0 && errno == EPIPE && sigismember(&pending, SIGPIPE) == 0) {
    constexpr timespec atOnce{0, 0};
    while (sigtimedwait(&brokenPipe, nullptr, &atOnce) < 0 && errno == EINTR) continue;
  }
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace

Readiness Readiness::takeFromEnvironment() {
  const char* const value = std::getenv(kReadyVariable);
  if (value == nullptr) return Readiness(OwnedDescriptor());
  OwnedDescriptor pipe = pipeFrom(value);
  ::unsetenv(kReadyVariable);
  return Readiness(std::move(pipe));
}

void Readiness::failed(std::string_view reason) {
  tell(reason.empty() ? std::string_view("Velto could not start") : reason);
}

void Readiness::tell(std::string_view line) {
  if (!pipe_.valid()) return;
  writeQuietly(pipe_, oneLine(line.substr(0, PIPE_BUF - 1)) + "\n");
  pipe_.close();
}

}  // namespace velto
