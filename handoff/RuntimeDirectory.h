#pragma once

#include <string>

#include <sys/types.h>

#include "handoff/OwnedDescriptor.h"

namespace velto {

/// The person's private folder for what exists only while the application runs: the hand-off socket and the
/// lock of its election. Held open, so that what was checked is what is used.
class RuntimeDirectory {
 public:
  /// `$XDG_RUNTIME_DIR/velto` when that value (null when unset) is an absolute path, else `/tmp/velto-<uid>`.
  static std::string pathFor(const char* xdgRuntimeDir, uid_t owner);

  /// Opens the folder, making it with mode 0700 when it is missing. Throws HandoffError unless it is a folder
  /// in its own right (no link), belongs to `owner`, and is closed to everybody else; and unless
  /// XDG_RUNTIME_DIR, when used, belongs to `owner` too.
  static RuntimeDirectory open(const char* xdgRuntimeDir, uid_t owner);

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] int descriptor() const { return descriptor_.get(); }
  [[nodiscard]] uid_t owner() const { return owner_; }

 private:
  RuntimeDirectory(std::string path, OwnedDescriptor descriptor, uid_t owner)
      : path_(std::move(path)), descriptor_(std::move(descriptor)), owner_(owner) {}

  std::string path_;
  OwnedDescriptor descriptor_;
  uid_t owner_;
};

}  // namespace velto
