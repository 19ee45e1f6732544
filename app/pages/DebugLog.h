#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>

#include "platform/foundation/FileManager.h"
#include "platform/loop/Clock.h"

namespace velto {

/// The one log: `urlbar_debug.txt` in the person's documents folder. Without such a folder, or when it cannot
/// be written, nothing happens.
class DebugLog {
 public:
  DebugLog(FileManager& files, const Clock& clock, const std::optional<std::filesystem::path>& documents);

  /// Replaces the file by its first line.
  void begin();
  /// Adds "<date>: [Nav] <message>" as one line: control characters become blanks, and an endless message is
  /// cut. A run that has logged very much logs no more.
  void log(std::string_view message);

 private:
  FileManager& files_;
  const Clock& clock_;
  std::optional<std::filesystem::path> file_;
  std::size_t written_ = 0;
};

}  // namespace velto
