#include "handoff/ElectionLock.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "handoff/Deadline.h"
#include "handoff/HandoffError.h"

namespace velto {

namespace {

constexpr char kLockName[] = "lock";
constexpr std::chrono::milliseconds kRetryPause{2};

void lock(const OwnedDescriptor& file, const RuntimeDirectory& directory, const Deadline& deadline) {
  while (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno == EINTR) continue;
    if (errno != EWOULDBLOCK) throw HandoffError::fromErrno("cannot lock in " + directory.path(), errno);
    if (deadline.passed()) throw HandoffError("another start of Velto hangs; end it and try again");
    deadline.rest(kRetryPause);
  }
}

/// A cleaner of temporary files may have removed the file between opening and locking it; a lock on a file
/// that nobody else can find keeps nobody out.
bool stillNamed(const OwnedDescriptor& file, const RuntimeDirectory& directory) {
  struct stat held {};
  struct stat named {};
  return ::fstat(file.get(), &held) == 0 &&
         ::fstatat(directory.descriptor(), kLockName, &named, AT_SYMLINK_NOFOLLOW) == 0 &&
         held.st_dev == named.st_dev && held.st_ino == named.st_ino;
}

}  // namespace

ElectionLock::ElectionLock(const RuntimeDirectory& directory, std::chrono::milliseconds patience) {
  const Deadline deadline(patience);
  do {
    file_ = OwnedDescriptor(::openat(directory.descriptor(), kLockName,
                                     O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file_.valid()) throw HandoffError::fromErrno("cannot make a lock in " + directory.path(), errno);
    lock(file_, directory, deadline);
  } while (!stillNamed(file_, directory) && !deadline.passed());
}

}  // namespace velto
