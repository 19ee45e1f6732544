#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>

#include "browsing/safari/SafariData.h"
#include "browsing/safari/SafariSiteFilter.h"
#include "platform/foundation/Environment.h"
#include "platform/foundation/FileManager.h"
#include "platform/loop/Clock.h"

namespace velto {

class SafariDataSourceError : public std::runtime_error {
 public:
  enum class Kind { noAccess };
  explicit SafariDataSourceError(Kind kind)
      : std::runtime_error("Safari's data is out of reach"), kind_(kind) {}
  [[nodiscard]] Kind kind() const { return kind_; }

 private:
  Kind kind_;
};

/// Where Safari's two files are read: in their own place, or in the copies that the `velto` command staged. A
/// value without a state. All functions may be called on any thread; those that read block for as long as the
/// disk does.
struct SafariDataSource {
  using Path = std::filesystem::path;

  Path liveCookiesURL = {};
  Path liveHistoryURL = {};
  /// Holds "Cookies.binarycookies" and "History.db", either or both, with the log of the latter beside it.
  Path snapshotDirectory = {};
  std::optional<Path> syncSnapshotURL = {};
  /// Never null.
  FileManager* fileManager = nullptr;
  /// Private to the person and to this application. The live database is read from a copy in there.
  Path temporaryDirectory = {};
  /// Never null.
  const Clock* clock = nullptr;

  /// Safari's paths below the person's own home folder, whatever `$HOME` says.
  static SafariDataSource standard(const Environment& environment, FileManager& fileManager,
                                   const Clock& clock);

  /// Cheap enough for the main thread.
  [[nodiscard]] bool canReadLiveCookies() const;
  /// Live data or else the snapshot. Throws `SafariDataSourceError` when there is neither, and what
  /// `readSnapshot` throws.
  [[nodiscard]] SafariData load(const SafariSiteFilter& filter) const;
  /// Throws `FileError`, `SafariBinaryCookies::ParseError` or `SafariHistoryReader::ReadError`.
  [[nodiscard]] SafariData readLive(const SafariSiteFilter& filter) const;
  /// Nothing when there is no snapshot. Throws `SafariBinaryCookies::ParseError` or
  /// `SafariHistoryReader::ReadError`.
  [[nodiscard]] std::optional<SafariData> readSnapshot(const SafariSiteFilter& filter) const;

  /// These never throw.
  void removeSnapshot() const;
  /// Removes the folder that holds it.
  void removeSyncSnapshot(const Path& url) const;
  /// Removes the copies that an application which was killed left among the temporary files. For the start,
  /// before anything is read: no other application of this person runs then.
  void removeAbandonedCopies() const;
  /// Removes snapshots that were staged more than 15 minutes ago, and what a command that was killed while it
  /// staged them left. For a start that no import asked for.
  void removeAbandonedSnapshots() const;
};

}  // namespace velto
