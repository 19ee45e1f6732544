#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "browsing/history/HistoryEntry.h"
#include "platform/foundation/FileManager.h"

namespace velto {

/// A history file: a JSON array of visits, newest first. The file is the only state, and whoever changes it
/// is honoured. Thread-safe for readers; one writer at a time.
class HistoryStore {
 public:
  /// What was visited here, and what was brought over from Safari.
  static constexpr const char* kPrimaryFileName = "History.json";
  static constexpr const char* kSafariImportsFileName = "SafariHistory.json";

  /// The directory is made by the first save.
  HistoryStore(FileManager& fileManager, std::filesystem::path directory, std::string fileName,
               bool prettyPrinted);

  [[nodiscard]] std::filesystem::path fileURL() const { return directory_ / fileName_; }
  /// All entries; none at all when the file is missing or one entry cannot be read. Never throws.
  [[nodiscard]] std::vector<HistoryEntry> load() const;
  /// Replaces the file. Throws `FileError` or `JsonError`.
  void save(const std::vector<HistoryEntry>& entries);

 private:
  FileManager& fileManager_;
  std::filesystem::path directory_;
  std::string fileName_;
  bool prettyPrinted_;
};

}  // namespace velto
