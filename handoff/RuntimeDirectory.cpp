#include "handoff/RuntimeDirectory.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>

#include "handoff/HandoffError.h"

namespace velto {

namespace {

constexpr mode_t kOpenToOthers = S_IRWXG | S_IRWXO;

bool usable(const char* xdgRuntimeDir) { return xdgRuntimeDir != nullptr && xdgRuntimeDir[0] == '/'; }

std::string octal(mode_t mode) {
  char text[8];
  std::snprintf(text, sizeof text, "%04o", static_cast<unsigned>(mode & 07777U));
  return text;
}

struct stat statusOf(const OwnedDescriptor& descriptor, const std::string& path) {
  struct stat status {};
  if (::fstat(descriptor.get(), &status) != 0) throw HandoffError::fromErrno("cannot look at " + path, errno);
  return status;
}

void checkXdgRuntimeDir(const char* path, uid_t owner) {
  const std::string name = std::string("XDG_RUNTIME_DIR, ") + path + ",";
  const OwnedDescriptor parent(::open(path, O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!parent.valid()) {
    throw HandoffError::fromErrno(name + " cannot be used; correct or unset the variable", errno);
  }
  if (const struct stat status = statusOf(parent, path); status.st_uid != owner) {
    throw HandoffError(name + " belongs to another user (uid " + std::to_string(status.st_uid) +
                       "); run this as that user, or unset the variable");
  } else if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
    throw HandoffError(name + " can be written by other users (mode " + octal(status.st_mode) +
                       "); close it with: chmod 700 " + path);
  }
}

HandoffError cannotOpen(const std::string& path, int code) {
  struct stat status {};
  if ((code == ENOTDIR || code == ELOOP) && ::lstat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode)) {
    return HandoffError(path + (S_ISLNK(status.st_mode) ? " is a symbolic link" : " is not a folder") +
                        "; remove it and try again");
  }
  return HandoffError::fromErrno("cannot open the folder " + path, code);
}

void checkPrivate(const struct stat& status, const std::string& path, uid_t owner) {
  if (status.st_uid != owner) {
    throw HandoffError("the folder " + path + " belongs to another user (uid " +
                       std::to_string(status.st_uid) + "); have it removed and try again");
  }
  if ((status.st_mode & kOpenToOthers) != 0) {
    throw HandoffError("the folder " + path + " is open to other users (mode " + octal(status.st_mode) +
                       "); close it with: chmod 700 " + path);
  }
}

}  // namespace

std::string RuntimeDirectory::pathFor(const char* xdgRuntimeDir, uid_t owner) {
  if (!usable(xdgRuntimeDir)) return "/tmp/velto-" + std::to_string(owner);
  std::string path(xdgRuntimeDir);
  while (path.ends_with('/')) path.pop_back();
  return path + "/velto";
}

RuntimeDirectory RuntimeDirectory::open(const char* xdgRuntimeDir, uid_t owner) {
  if (usable(xdgRuntimeDir)) checkXdgRuntimeDir(xdgRuntimeDir, owner);
  std::string path = pathFor(xdgRuntimeDir, owner);
  if (::mkdir(path.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
    throw HandoffError::fromErrno("cannot make the folder " + path, errno);
  }
  OwnedDescriptor descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!descriptor.valid()) throw cannotOpen(path, errno);
  checkPrivate(statusOf(descriptor, path), path, owner);
  return {std::move(path), std::move(descriptor), owner};
}

}  // namespace velto
