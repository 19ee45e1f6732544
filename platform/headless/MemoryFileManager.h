#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/foundation/FileFailure.h"
#include "platform/foundation/FileManager.h"

namespace velto {

/// Files in memory, for tests. It starts with an empty root folder. Each change is made one second after the
/// one before it, from 2024-01-01T00:00:00Z on, so that what was changed later is told from what was changed
/// earlier.
///
/// A link is followed at the end of a path only. Thread-safe.
class MemoryFileManager final : public FileManager {
 public:
  MemoryFileManager();

  [[nodiscard]] std::string read(const Path& path) const override;
  void writeAtomically(const Path& path, std::string_view bytes) override;
  void append(const Path& path, std::string_view bytes) override;
  void createDirectory(const Path& path) override;
  void remove(const Path& path) override;
  void rename(const Path& from, const Path& to) override;
  [[nodiscard]] std::vector<std::string> list(const Path& directory) const override;
  [[nodiscard]] std::optional<FileInfo> info(const Path& path) const override;

  /// Makes a link, as another program would. It counts as no call.
  void makeLink(const Path& path, const Path& target);
  /// Gives what is at the path another time. It counts as no call.
  void setModified(const Path& path, WallTime time);

  /// How many of the calls above were made; `info` and `exists` count too.
  [[nodiscard]] int callCount() const;
  /// The `number`-th call from now (1 is the next one) fails and changes nothing. `info` fails by telling
  /// nothing.
  void failCall(int number, FileError::Kind kind = FileError::Kind::other);
  /// Each call fails from now on, as on a disk that is gone.
  void failAllCalls(FileError::Kind kind = FileError::Kind::other);
  /// No call fails any more.
  void stopFailing();

 private:
  struct Node {
    FileInfo info;
    /// The bytes of a file or the target of a link.
    std::string contents;
  };
  using Nodes = std::map<Path, Node>;

  [[nodiscard]] bool isFailing() const;
  [[nodiscard]] Path followed(Path path) const;
  [[nodiscard]] Nodes::const_iterator found(const Path& path) const;
  [[nodiscard]] bool isDirectory(const Path& path) const;
  [[nodiscard]] bool isFile(const Path& path) const;
  void requireFolder(const Path& path, FileOperation operation) const;
  /// Gives what is at the path the size of its contents and the time of the change that is being made.
  void touch(const Path& path);
  void beginChange() { lastChange_.secondsSince1970 += 1; }
  void put(const Path& path, FileInfo::Type type, std::string contents);

  mutable std::mutex mutex_;
  Nodes nodes_;
  WallTime lastChange_{1704067199};
  std::uint64_t lastInode_ = 0;
  mutable int callCount_ = 0;
  int failingCall_ = 0;
  bool allFail_ = false;
  FileError::Kind failure_ = FileError::Kind::other;
};

}  // namespace velto
