#pragma once

#include <cstddef>
#include <filesystem>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "browsing/history/HistoryEntry.h"
#include "browsing/history/HistoryFormat.h"
#include "browsing/history/LegacyHistoryMigration.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/Url.h"
#include "platform/foundation/UserDefaults.h"

namespace velto {

/// A history file: a JSON array of visits, newest first. The file is the only state, and whoever changes it
/// is honoured. Thread-safe for readers; one writer at a time.
class HistoryStore {
 public:
  /// What was visited here, and what was brought over from Safari.
  static constexpr const char* kPrimaryFileName = "History.json";
  static constexpr const char* kSafariImportsFileName = "SafariHistory.json";
  /// Where older versions kept the list among the preferences.
  static constexpr const char* kLegacyKey = "browserHistory";

  /// The directory is made by the first save.
  HistoryStore(FileManager& fileManager, std::filesystem::path directory, std::string fileName,
               bool prettyPrinted);

  [[nodiscard]] std::filesystem::path fileURL() const { return directory_ / fileName_; }
  /// All entries; none at all when the file is missing or one entry cannot be read. Never throws.
  [[nodiscard]] std::vector<HistoryEntry> load() const;
  /// The first of those that `load` would give, at most so many. Cheap when the file is known: since it was
  /// last looked at as a whole only `record` changed it.
  [[nodiscard]] std::vector<HistoryEntry> newest(std::size_t count) const;
  /// Replaces the file. Throws `FileError`.
  void save(const std::vector<HistoryEntry>& entries);
  /// Puts the entry before the others, in place of the first one when that has the same URL. The same as to
  /// load, change and save, but a file that is as this class writes it is copied rather than understood.
  /// Throws `FileError`.
  void record(const HistoryEntry& entry) { recordAll({&entry, 1}); }
  /// The same for one visit after the other, in one write.
  void recordAll(std::span<const HistoryEntry> visits);
  /// Moves the list out of the preferences, where it stands with numbers for dates. The key goes only when
  /// the file is known to be there: a list with fractions of seconds, which the file does not keep, stays for
  /// one more run. Main thread only. Never throws.
  LegacyHistoryMigration migrateLegacyDefaults(UserDefaults& defaults);

 private:
  [[nodiscard]] HistoryForm form() const {
    return prettyPrinted_ ? HistoryForm::pretty : HistoryForm::compact;
  }
  /// What the open file is when it is, as a whole, as it was written here: since it is remembered or by a
  /// walk.
  [[nodiscard]] std::optional<FileInfo> knownInfo(const FileReader& file) const;
  /// These give nothing when the file has to be understood by `load`.
  [[nodiscard]] std::optional<std::vector<HistoryEntry>> loadAsWritten() const;
  [[nodiscard]] std::optional<std::vector<HistoryEntry>> newestAsWritten(std::size_t count) const;
  bool recordByCopying(std::span<const HistoryEntry> entries);
  void remember(const FileInfo& info) const;
  [[nodiscard]] bool remembers(const FileInfo& info) const;

  FileManager& fileManager_;
  std::filesystem::path directory_;
  std::string fileName_;
  bool prettyPrinted_;

  mutable std::mutex mutex_;
  /// The file that was last seen to be, as a whole, as this class writes it.
  mutable std::optional<FileInfo> known_;
};

/// The newest entry that is a page of the web (http or https).
std::optional<Url> newestWebPage(const HistoryStore& store);

}  // namespace velto
