#pragma once

#include "platform/foundation/FileManager.h"

namespace velto {

/// The real disk. It never waits for a pipe or a device in a file's place: those are refused, and
/// so is a file of more than 2 GB when it is to be read as a whole.
class PosixFileManager final : public FileManager {
 public:
  [[nodiscard]] std::string read(const Path& path) const override;
  void writeAtomically(const Path& path, std::string_view bytes) override;
  [[nodiscard]] std::unique_ptr<FileReader> open(const Path& path) const override;
  std::optional<FileInfo> replaceBeginning(const Path& path, std::string_view bytes, const FileReader& rest,
                                           std::uint64_t offset, const FileInfo& known) override;
  void append(const Path& path, std::string_view bytes) override;
  void createDirectory(const Path& path) override;
  void remove(const Path& path) override;
  void rename(const Path& from, const Path& to) override;
  [[nodiscard]] std::vector<std::string> list(const Path& directory) const override;
  void removeAbandonedWrites(const Path& directory) override;
  [[nodiscard]] std::optional<FileInfo> info(const Path& path) const override;
};

}  // namespace velto
