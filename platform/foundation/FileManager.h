#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Date.h"

namespace velto {

/// A failed file operation. `what()` is worded for the person and names the file.
class FileError : public std::runtime_error {
 public:
  enum class Kind { notFound, notPermitted, alreadyExists, isDirectory, notDirectory, noSpace, other };
  FileError(Kind kind, const std::string& message) : std::runtime_error(message), kind_(kind) {}
  [[nodiscard]] Kind kind() const { return kind_; }

 private:
  Kind kind_;
};

/// What a look at a path tells. Two looks that compare equal saw the same contents.
struct FileInfo {
  enum class Type { file, directory, symbolicLink, other };
  Type type = Type::file;
  std::uint64_t size = 0;
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  WallTime modified;
  /// When the contents, the name or the rights were last changed; unlike `modified` nobody can set it.
  WallTime changed;
  bool operator==(const FileInfo&) const = default;
};

/// A file held open. It stays the same one when another takes its place. Its file manager outlives it.
class FileReader {
 public:
  virtual ~FileReader() = default;
  /// Fills the buffer with what stands at the offset, and tells how much that was: less than the buffer holds
  /// only at the end of the file. Throws `FileError`.
  [[nodiscard]] virtual std::size_t read(std::uint64_t offset, std::span<char> buffer) const = 0;
  /// The file as it is now. Throws `FileError`.
  [[nodiscard]] virtual FileInfo info() const = 0;
};

/// The one door to the disk, so that a test can keep files in memory or make any call fail.
///
/// Paths are absolute. Everything made here is private to the person: files 0600, directories 0700.
/// Thread-safe for different paths. Operations throw `FileError` unless they say otherwise.
class FileManager {
 public:
  using Path = std::filesystem::path;
  virtual ~FileManager() = default;

  /// The whole file. Follows links.
  [[nodiscard]] virtual std::string read(const Path& path) const = 0;
  /// Replaces the file as a whole: written aside in the same folder, flushed, renamed over the old one. A
  /// kill at any moment leaves the old or the new bytes. The folder must exist; a link at `path` is replaced
  /// by a plain file.
  virtual void writeAtomically(const Path& path, std::string_view bytes) = 0;
  /// Opens a plain file, so that one too large for the memory can be read in parts. Follows links.
  [[nodiscard]] virtual std::unique_ptr<FileReader> open(const Path& path) const;
  /// Like `writeAtomically`: these bytes, and then what `rest`, opened by this manager, holds from the offset
  /// on. Tells the new file. Nothing, and the file as it was, when `rest` is not at the path or not what
  /// `known` says of it any more.
  virtual std::optional<FileInfo> replaceBeginning(const Path& path, std::string_view bytes,
                                                   const FileReader& rest, std::uint64_t offset,
                                                   const FileInfo& known);
  /// Adds to the end in one write; makes the file if it is missing.
  virtual void append(const Path& path, std::string_view bytes) = 0;
  /// Makes the folder and those above it. One that is there already is left as it is.
  virtual void createDirectory(const Path& path) = 0;
  /// Removes a file, a link (not its target) or a folder with all that it holds.
  virtual void remove(const Path& path) = 0;
  /// Renames within one file system; a plain file at `to` is replaced.
  virtual void rename(const Path& from, const Path& to) = 0;
  /// Names in the folder, in byte order, without "." and "..".
  [[nodiscard]] virtual std::vector<std::string> list(const Path& directory) const = 0;
  /// Removes from the folder what writes left aside whose process was killed. A folder behind a link is left
  /// alone. Never throws.
  virtual void removeAbandonedWrites(const Path&) {}
  /// Does not follow links. Nothing when there is nothing or it cannot be looked at. Never throws.
  [[nodiscard]] virtual std::optional<FileInfo> info(const Path& path) const = 0;

  /// Copies a plain file, as long as it was at the start, to where nothing is yet; a copy that fails is
  /// removed. Follows a link at `from`. A file of more than 4 GB is refused.
  void copy(const Path& from, const Path& to);
  /// Whether there is a file, folder or link. Never throws.
  [[nodiscard]] bool exists(const Path& path) const { return info(path).has_value(); }
  /// The whole file, or nothing when it cannot be read. Never throws `FileError`.
  [[nodiscard]] std::optional<std::string> readIfPossible(const Path& path) const;
};

}  // namespace velto
