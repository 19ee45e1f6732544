#include "handoff/ApplicationStart.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "handoff/Deadline.h"
#include "handoff/HandoffError.h"
#include "handoff/OneLine.h"
#include "handoff/OwnedDescriptor.h"
#include "handoff/Readiness.h"

namespace velto {

namespace {

constexpr int kReadyDescriptor = 3;  // one digit: a shell can write to it
constexpr std::size_t kReasonLimit = 4096;
constexpr std::chrono::milliseconds kEndingTime{500};

/// What is done in the new process before the program runs.
class SpawnPlan {
 public:
  explicit SpawnPlan(int readyPipe) {
    posix_spawn_file_actions_init(&actions_);
    // The pipe first: it may have any number above the standard streams.
    posix_spawn_file_actions_adddup2(&actions_, readyPipe, kReadyDescriptor);
    posix_spawn_file_actions_addclosefrom_np(&actions_, kReadyDescriptor + 1);
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
      posix_spawn_file_actions_addopen(&actions_, stream, "/dev/null", O_RDWR, 0);
    }
    posix_spawn_file_actions_addchdir_np(&actions_, "/");

    sigset_t signals;
    posix_spawnattr_init(&attributes_);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    posix_spawnattr_setflags(&attributes_,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;
  ~SpawnPlan() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&actions_);
  }

  /// 0, or the error's number.
  int run(const std::string& program, char** arguments, char** environment, pid_t& process) const {
    return ::posix_spawn(&process, program.c_str(), &actions_, &attributes_, arguments, environment);
  }

 private:
  posix_spawn_file_actions_t actions_{};
  posix_spawnattr_t attributes_{};
};

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

std::vector<std::string> childEnvironment() {
  const std::string ours = std::string(kReadyVariable) + "=";
  std::vector<std::string> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    if (!std::string_view(*variable).starts_with(ours)) variables.emplace_back(*variable);
  }
  variables.push_back(ours + std::to_string(kReadyDescriptor));
  return variables;
}

std::pair<OwnedDescriptor, OwnedDescriptor> makePipe() {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) throw HandoffError::fromErrno("cannot make a pipe", errno);
  return {OwnedDescriptor(ends[0]), OwnedDescriptor(ends[1])};
}

pid_t spawn(const std::string& program, const std::vector<std::string>& arguments, int readyPipe) {
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<std::string> variables = childEnvironment();
  pid_t process = -1;
  const int error =
      SpawnPlan(readyPipe).run(program, pointersTo(words).data(), pointersTo(variables).data(), process);
  if (error == ENOENT)
    throw HandoffError("the application is missing at " + program + "; install Velto again");
  if (error != 0) throw HandoffError::fromErrno("cannot start " + program, error);
  return process;
}

/// How a process that closed its pipe without a word ended: it closes its files a moment before it is gone.
std::string ending(pid_t process) {
  const OwnedDescriptor handle(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
  if (handle.valid() && !Deadline(kEndingTime).awaits(handle.get(), POLLIN)) return {};
  int status = 0;
  if (::waitpid(process, &status, WNOHANG) != process) return {};
  if (WIFEXITED(status)) return " (exit status " + std::to_string(WEXITSTATUS(status)) + ")";
  return " (signal " + std::to_string(WTERMSIG(status)) + ", " + ::strsignal(WTERMSIG(status)) + ")";
}

/// The first line on the pipe; empty when it was closed without one.
std::string firstLine(const OwnedDescriptor& pipe, const Deadline& deadline) {
  std::string line;
  while (line.size() < kReasonLimit && deadline.awaits(pipe.get(), POLLIN)) {
    char piece[512];
    const ssize_t count = ::read(pipe.get(), piece, sizeof piece);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return line;
    line.append(piece, static_cast<std::size_t>(count));
    if (const std::size_t end = line.find('\n'); end != std::string::npos) return line.substr(0, end);
  }
  if (line.empty()) throw HandoffError("the application was started but does not say that it is ready");
  return line;
}

}  // namespace

void startApplication(const std::string& program, const std::vector<std::string>& arguments,
                      std::chrono::milliseconds patience) {
  const Deadline deadline(patience);
  auto [reading, writing] = makePipe();
  const pid_t process = spawn(program, arguments, writing.get());
  writing.close();
  const std::string line = firstLine(reading, deadline);
  if (line == kReadyLine) return;
  if (!line.empty()) throw HandoffError(oneLine(line));
  throw HandoffError("the application died before it was ready" + ending(process));
}

}  // namespace velto
