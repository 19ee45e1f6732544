#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "browsing/safari/SafariBinaryCookies.h"
#include "browsing/safari/SafariDataSource.h"
#include "browsing/safari/SafariHistoryReader.h"
#include "platform/foundation/PosixFileManager.h"
#include "platform/headless/MemoryFileManager.h"
#include "tests/support/CookieFileWriter.h"
#include "tests/support/SafariDatabase.h"
#include "tests/support/TemporaryFolder.h"

namespace velto {
namespace {

namespace fs = std::filesystem;

class FixedClock final : public Clock {
 public:
  [[nodiscard]] WallTime now() const override { return time; }
  [[nodiscard]] Uptime uptime() const override { return {}; }
  WallTime time;
};

/// Safari's files below a folder, with a cookie and a visit for each word written there.
class SafariDataSourceTest : public testing::Test {
 protected:
  SafariDataSourceTest() {
    source_ = {.liveCookiesURL = root_ / "live" / "Cookies.binarycookies",
               .liveHistoryURL = root_ / "live" / "History.db",
               .snapshotDirectory = root_ / "Velto" / "SafariImport",
               .syncSnapshotURL = root_ / "Velto" / "SafariSync" / "Cookies.binarycookies",
               .fileManager = &files_,
               .temporaryDirectory = root_ / "Temporary",
               .clock = &clock_};
    files_.createDirectory(root_ / "live");
    files_.createDirectory(source_.snapshotDirectory);
  }

  void writeCookies(const fs::path& folder, const std::string& word) {
    const std::vector<SafariCookie> cookies = {{.domain = word, .name = "n", .path = "/", .value = ""}};
    files_.writeAtomically(folder / "Cookies.binarycookies", cookieFile(cookies));
  }
  static std::unique_ptr<SafariDatabase> writeHistory(const fs::path& folder, const std::string& word) {
    auto database = std::make_unique<SafariDatabase>(folder / "History.db");
    database->run(
        "PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 0;"
        "INSERT INTO history_items (id, url) VALUES (1, 'https://" +
        word +
        "/');"
        "INSERT INTO history_visits (history_item, visit_time) VALUES (1, 5)");
    return database;
  }
  void writeLive() {
    writeCookies(root_ / "live", "live");
    writeHistory(root_ / "live", "live");
  }
  void writeSnapshot() {
    writeCookies(source_.snapshotDirectory, "staged");
    writeHistory(source_.snapshotDirectory, "staged");
  }
  /// Where it was read, and the words that were found: "live: live live".
  [[nodiscard]] std::string loaded(const SafariSiteFilter& filter = {}) const {
    try {
      const SafariData data = source_.load(filter);
      std::string text = data.location.isLive() ? "live:" : "snapshot:";
      for (const SafariCookie& cookie : data.cookies) text += ' ' + cookie.domain;
      for (const HistoryEntry& entry : data.history) text += ' ' + entry.title;
      return text;
    } catch (const SafariDataSourceError&) {
      return "no access";
    } catch (const SafariBinaryCookies::ParseError&) {
      return "bad cookies";
    } catch (const SafariHistoryReader::ReadError&) {
      return "bad history";
    }
  }
  [[nodiscard]] std::vector<std::string> temporaryNames() const {
    return fs::is_directory(source_.temporaryDirectory) ? files_.list(source_.temporaryDirectory)
                                                        : std::vector<std::string>();
  }

  PosixFileManager files_;
  FixedClock clock_;
  const test::TemporaryFolder folder_;
  const fs::path& root_ = folder_.path;
  SafariDataSource source_;
};

TEST_F(SafariDataSourceTest, KnowsWhereSafariKeepsItsFiles) {
  Environment environment;
  environment.applicationSupportDirectory = "/data/Velto";
  environment.temporaryDirectory = "/cache/Velto/Temporary";
  environment.variables["HOME"] = "/elsewhere";
  const auto standard = SafariDataSource::standard(environment, files_, clock_);
  const fs::path home = ::getpwuid(::getuid())->pw_dir;
  EXPECT_EQ(standard.liveCookiesURL,
            home / "Library/Containers/com.apple.Safari/Data/Library/Cookies/Cookies.binarycookies");
  EXPECT_EQ(standard.liveHistoryURL, home / "Library/Safari/History.db");
}

TEST_F(SafariDataSourceTest, PrefersLiveData) {
  EXPECT_EQ(loaded(), "no access");
  writeSnapshot();
  EXPECT_EQ(loaded(), "snapshot: staged staged");
  EXPECT_EQ(source_.load({}).location.stagedAt, files_.info(source_.snapshotDirectory)->modified);
  writeLive();
  EXPECT_EQ(loaded(), "live: live live");
  EXPECT_EQ(loaded({{"other.example"}}), "live: live") << "only the visits are filtered here";
  EXPECT_TRUE(temporaryNames().empty());
}

TEST_F(SafariDataSourceTest, ReadsWhatSafariHasInItsLogOnly) {
  writeCookies(root_ / "live", "live");
  const auto open = writeHistory(root_ / "live", "live");
  ASSERT_GT(fs::file_size(root_ / "live" / "History.db-wal"), 0U);
  EXPECT_EQ(loaded(), "live: live live");
  fs::remove(root_ / "live" / "History.db-wal");
  fs::create_directory(root_ / "live" / "History.db-wal");
  EXPECT_EQ(loaded(), "live: live") << "without its log the database is only older";
  EXPECT_TRUE(temporaryNames().empty());
}

TEST_F(SafariDataSourceTest, EachFailureFallsBackAndLeavesNoCopy) {
  const auto cookies = root_ / "live" / "Cookies.binarycookies";
  const auto history = root_ / "live" / "History.db";
  const struct {
    const char* what;
    std::function<void()> damage;
  } cases[] = {
      {"no cookies", [&] { fs::remove(cookies); }},
      {"a pipe for the cookies", [&] { fs::remove(cookies), ::mkfifo(cookies.c_str(), 0600); }},
      {"corrupt cookies", [&] { files_.writeAtomically(cookies, "cook"); }},
      {"no database", [&] { fs::remove(history); }},
      {"corrupt database", [&] { files_.writeAtomically(history, "SQLite"); }},
      {"no temporary folder", [&] { files_.writeAtomically(root_ / "Temporary", ""); }},
  };
  writeSnapshot();
  for (const auto& each : cases) {
    fs::remove_all(root_ / "live");
    fs::remove_all(source_.temporaryDirectory);
    files_.createDirectory(root_ / "live");
    writeLive();
    each.damage();
    EXPECT_EQ(loaded(), "snapshot: staged staged") << each.what;
    EXPECT_TRUE(temporaryNames().empty()) << each.what;
  }
}

TEST_F(SafariDataSourceTest, ASnapshotMayLackEither) {
  writeSnapshot();
  const auto cookies = source_.snapshotDirectory / "Cookies.binarycookies";
  const auto history = source_.snapshotDirectory / "History.db";
  fs::remove(cookies);
  EXPECT_EQ(loaded(), "snapshot: staged");
  files_.writeAtomically(cookies, "corrupt!");
  EXPECT_EQ(loaded(), "bad cookies");
  writeCookies(source_.snapshotDirectory, "staged");
  files_.writeAtomically(history, "corrupt!");
  EXPECT_EQ(loaded(), "bad history");
  fs::remove(history);
  EXPECT_EQ(loaded(), "snapshot: staged");
}

TEST_F(SafariDataSourceTest, AsksWhetherTheCookiesAreInReach) {
  EXPECT_FALSE(source_.canReadLiveCookies());
  files_.writeAtomically(source_.liveCookiesURL, "");
  EXPECT_FALSE(source_.canReadLiveCookies());
  files_.writeAtomically(source_.liveCookiesURL, "x");
  EXPECT_TRUE(source_.canReadLiveCookies());
  fs::remove(source_.liveCookiesURL);
  ASSERT_EQ(::mkfifo(source_.liveCookiesURL.c_str(), 0600), 0);
  EXPECT_FALSE(source_.canReadLiveCookies());
}

TEST_F(SafariDataSourceTest, RemovesTheWholeSnapshotOfASync) {
  files_.createDirectory(source_.syncSnapshotURL->parent_path());
  source_.removeSyncSnapshot(*source_.syncSnapshotURL);
  EXPECT_EQ(files_.list(root_ / "Velto"), std::vector<std::string>{"SafariImport"});
}

TEST(SafariDataSource, RemovesWhatWasAbandoned) {
  MemoryFileManager files;
  FixedClock clock;
  const SafariDataSource source = {.snapshotDirectory = "/data/SafariImport",
                                   .syncSnapshotURL = "/data/SafariSync/Cookies.binarycookies",
                                   .fileManager = &files,
                                   .temporaryDirectory = "/temporary",
                                   .clock = &clock};
  for (const char* name : {"SafariHistory-1/deep", "SafariHistory", "Other"}) {
    files.createDirectory(std::string("/temporary/") + name);
  }
  source.removeAbandonedCopies();
  EXPECT_EQ(files.list("/temporary"), (std::vector<std::string>{"Other", "SafariHistory"}));

  const std::vector<std::string> mine = {"SafariImport", "SafariSync"};
  const std::vector<std::string> others = {"Layouts", "SafariHistory.json", "SafariImports"};
  const auto left = [&](double age) {
    for (const auto& names : {mine, others}) {
      for (const std::string& name : names) {
        files.createDirectory("/data/" + name);
        files.setModified("/data/" + name, {1000});
      }
    }
    clock.time = {1000 + age};
    source.removeAbandonedSnapshots();
    return files.list("/data");
  };
  EXPECT_EQ(left(899).size(), mine.size() + others.size());
  EXPECT_EQ(left(901), others);
  EXPECT_EQ(left(-901), others) << "the clock was wrong then";
}

}  // namespace
}  // namespace velto
