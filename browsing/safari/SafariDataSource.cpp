#include "browsing/safari/SafariDataSource.h"

#include <cmath>
#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include "browsing/safari/SafariBinaryCookies.h"
#include "browsing/safari/SafariHistoryReader.h"
#include "platform/foundation/Uuid.h"

namespace velto {
namespace {

using Path = SafariDataSource::Path;

constexpr const char* kCookiesName = "Cookies.binarycookies";
constexpr const char* kHistoryName = "History.db";
constexpr const char* kSnapshotName = "SafariImport";
constexpr const char* kSyncSnapshotName = "SafariSync";
constexpr std::string_view kCopyPrefix = "SafariHistory-";
constexpr double kAbandonedAfter = 15 * 60;

Path homeDirectory(const Environment& environment) {
  std::string buffer(16384, '\0');
  passwd entry{};
  passwd* found = nullptr;
  ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
  if (found != nullptr && found->pw_dir != nullptr && *found->pw_dir == '/') return found->pw_dir;
  return environment.variable("HOME").value_or("/");
}

void removeIfPossible(FileManager& files, const Path& path) {
  try {
    files.remove(path);
  } catch (const FileError&) {  // it is not there, or will be found at the next start
  }
}

std::vector<std::string> namesIn(const FileManager& files, const Path& folder) {
  try {
    return files.list(folder);
  } catch (const FileError&) {
    return {};
  }
}

/// A copy of the database in a folder of its own, which goes at the end of the scope.
class DatabaseCopy {
 public:
  DatabaseCopy(FileManager& files, const Path& original, const Path& temporaryDirectory)
      : files_(files), folder_(temporaryDirectory / (std::string(kCopyPrefix) + makeUuid())) {
    try {
      files_.createDirectory(folder_);
      files_.copy(original, path());
    } catch (const FileError&) {
      removeIfPossible(files_, folder_);
      throw;
    }
    for (const char* suffix : {"-wal", "-shm"})
      copyIfPossible(original.native() + suffix, path().native() + suffix);
  }
  DatabaseCopy(const DatabaseCopy&) = delete;
  DatabaseCopy& operator=(const DatabaseCopy&) = delete;
  ~DatabaseCopy() { removeIfPossible(files_, folder_); }
  [[nodiscard]] Path path() const { return folder_ / kHistoryName; }

 private:
  void copyIfPossible(const Path& from, const Path& to) {
    try {
      if (files_.exists(from)) files_.copy(from, to);
    } catch (const FileError&) {  // the database is whole without it, only older
    }
  }

  FileManager& files_;
  Path folder_;
};

}  // namespace

SafariDataSource SafariDataSource::standard(const Environment& environment, FileManager& fileManager,
                                            const Clock& clock) {
  const Path library = homeDirectory(environment) / "Library";
  const Path& application = environment.applicationSupportDirectory;
  return {.liveCookiesURL =
              library / "Containers" / "com.apple.Safari" / "Data" / "Library" / "Cookies" / kCookiesName,
          .liveHistoryURL = library / "Safari" / kHistoryName,
          .snapshotDirectory = application / kSnapshotName,
          .syncSnapshotURL = application / kSyncSnapshotName / kCookiesName,
          .fileManager = &fileManager,
          .temporaryDirectory = environment.temporaryDirectory,
          .clock = &clock};
}

bool SafariDataSource::canReadLiveCookies() const {
  try {
    char first = 0;
    return fileManager->open(liveCookiesURL)->read(0, {&first, 1}) == 1;
  } catch (const FileError&) {
    return false;
  }
}

SafariData SafariDataSource::load(const SafariSiteFilter& filter) const {
  try {
    return readLive(filter);
  } catch (const std::exception&) {  // whatever it was, the snapshot is the other way
  }
  auto snapshot = readSnapshot(filter);
  if (!snapshot) throw SafariDataSourceError(SafariDataSourceError::Kind::noAccess);
  return std::move(*snapshot);
}

SafariData SafariDataSource::readLive(const SafariSiteFilter& filter) const {
  const std::string cookies = fileManager->read(liveCookiesURL);
  const DatabaseCopy copy(*fileManager, liveHistoryURL, temporaryDirectory);
  SafariData data;
  data.cookies = SafariBinaryCookies::parse(cookies);
  data.history = SafariHistoryReader::read(copy.path(), filter);
  return data;
}

std::optional<SafariData> SafariDataSource::readSnapshot(const SafariSiteFilter& filter) const {
  const Path cookies = snapshotDirectory / kCookiesName;
  const Path history = snapshotDirectory / kHistoryName;
  const bool hasHistory = fileManager->exists(history);
  if (!hasHistory && !fileManager->exists(cookies)) return std::nullopt;

  const auto folder = fileManager->info(snapshotDirectory);
  SafariData data;
  data.location.stagedAt = folder ? folder->modified : clock->now();
  if (const auto bytes = fileManager->readIfPossible(cookies))
    data.cookies = SafariBinaryCookies::parse(*bytes);
  if (hasHistory) data.history = SafariHistoryReader::read(history, filter);
  return data;
}

void SafariDataSource::removeSnapshot() const { removeIfPossible(*fileManager, snapshotDirectory); }

void SafariDataSource::removeSyncSnapshot(const Path& url) const {
  removeIfPossible(*fileManager, url.parent_path());
}

void SafariDataSource::removeAbandonedCopies() const {
  for (const std::string& name : namesIn(*fileManager, temporaryDirectory)) {
    if (name.starts_with(kCopyPrefix)) removeIfPossible(*fileManager, temporaryDirectory / name);
  }
}

void SafariDataSource::removeAbandonedSnapshots() const {
  for (const char* name : {kSnapshotName, kSyncSnapshotName}) {
    const Path path = snapshotDirectory.parent_path() / name;
    const auto folder = fileManager->info(path);
    const double age = folder ? clock->now().secondsSince1970 - folder->modified.secondsSince1970 : 0;
    if (std::abs(age) > kAbandonedAfter) removeIfPossible(*fileManager, path);
  }
}

}  // namespace velto
