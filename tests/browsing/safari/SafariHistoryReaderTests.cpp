#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "browsing/safari/SafariHistoryReader.h"
#include "tests/support/SafariDatabase.h"
#include "tests/support/TemporaryFolder.h"

namespace velto {
namespace {

using Kind = SafariHistoryReader::ReadError::Kind;

class SafariHistoryReaderTest : public testing::Test {
 protected:
  [[nodiscard]] std::filesystem::path path() const { return folder_ / "History.db"; }
  [[nodiscard]] std::vector<HistoryEntry> read(const SafariSiteFilter& filter = {}) const {
    return SafariHistoryReader::read(path(), filter);
  }
  [[nodiscard]] std::vector<std::string> urls(const SafariSiteFilter& filter = {}) const {
    std::vector<std::string> urls;
    for (const HistoryEntry& entry : read(filter)) urls.push_back(entry.url);
    return urls;
  }
  /// The failure, or the number of entries as a text.
  [[nodiscard]] std::string outcome() const {
    try {
      return std::to_string(read().size());
    } catch (const SafariHistoryReader::ReadError& error) {
      return (error.kind() == Kind::query ? "query: " : "cannot open: ") + std::string(error.what());
    }
  }
  void write(const std::string& bytes) const {
    std::filesystem::remove(path());  // some file systems flush what is written over
    std::ofstream(path(), std::ios::binary) << bytes;
  }
  [[nodiscard]] std::string bytes() const {
    std::ifstream file(path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  const test::TemporaryFolder root_;
  const std::filesystem::path& folder_ = root_.path;
};

const char* const kThreeVisits =
    "INSERT INTO history_items (id, url) VALUES (1, 'https://a.example/1'), (2, 'http://b.example/');"
    "INSERT INTO history_visits (history_item, visit_time, title) VALUES (1, 10.5, 'One'), (2, 30, NULL),"
    " (1, 20, '');";

TEST_F(SafariHistoryReaderTest, GivesEachVisitNewestFirst) {
  SafariDatabase(path()).run(kThreeVisits);
  const std::vector<HistoryEntry> expected = {{"http://b.example/", "b.example", {978307230}},
                                              {"https://a.example/1", "a.example", {978307220}},
                                              {"https://a.example/1", "One", {978307210.5}}};
  EXPECT_EQ(read(), expected);
  EXPECT_EQ(urls({{"a.example"}}), (std::vector<std::string>{"https://a.example/1", "https://a.example/1"}));
}

TEST_F(SafariHistoryReaderTest, LeavesOutWhatIsNoVisitOfAWebPage) {
  SafariDatabase database(path());
  database.run("DROP TABLE history_items; CREATE TABLE history_items (id INTEGER PRIMARY KEY, url)");
  const struct {
    const char* url;
    const char* columns;
    bool isRead;
  } cases[] = {
      {"'https://ok.example/'", "1, NULL", true},
      {"'https://redirected.example/'", "1, 7", false},
      {"'https://failed.example/'", "0, NULL", false},
      {"NULL", "1, NULL", false},
      {"'file:///etc/passwd'", "1, NULL", false},
      {"'http:/x'", "1, NULL", false},
      {"'http://'", "1, NULL", true},
      {"x'68747470733A2F2FFF'", "1, NULL", true},
      {"'https://cut.example/' || char(0) || 'rest'", "1, NULL", true},
  };
  int id = 0;
  std::size_t expected = 0;
  for (const auto& each : cases) {
    const std::string number = std::to_string(++id);
    database.run(
        "INSERT INTO history_items VALUES (" + number + ", " + each.url +
        ");"
        "INSERT INTO history_visits (history_item, visit_time, load_successful, redirect_destination)"
        " VALUES (" +
        number + ", " + number + ", " + each.columns + ")");
    expected += each.isRead ? 1 : 0;
    EXPECT_EQ(urls().size(), expected) << each.url;
  }
  const auto all = read();
  EXPECT_EQ(all[0], (HistoryEntry{"https://cut.example/", "cut.example", {978307209}}));
  EXPECT_EQ(all[1].title, "https://\uFFFD") << "no URL, so its text";
  EXPECT_TRUE(urls({{"nowhere.example"}}).empty());
}

TEST_F(SafariHistoryReaderTest, ReadsWhatStillStandsInTheLog) {
  SafariDatabase database(path());
  database.run("PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 0");
  database.run(kThreeVisits);
  EXPECT_EQ(read().size(), 3U) << "while it is being written";

  const auto copy = folder_ / "copy";
  std::filesystem::create_directory(copy);
  std::filesystem::copy(path(), copy / "History.db");
  std::filesystem::copy(path().native() + "-wal", copy / "History.db-wal");
  EXPECT_EQ(SafariHistoryReader::read(copy / "History.db", {}).size(), 3U) << "without the index of the log";

  database.run("PRAGMA wal_checkpoint(TRUNCATE)");
  database.run("DELETE FROM history_visits WHERE title = ''");
  std::filesystem::remove(copy / "History.db-shm");
  std::filesystem::copy(path(), copy / "History.db", std::filesystem::copy_options::overwrite_existing);
  EXPECT_EQ(SafariHistoryReader::read(copy / "History.db", {}).size(), 3U) << "with the log of another time";
}

TEST_F(SafariHistoryReaderTest, WhatIsNoDatabaseOfSafari) {
  EXPECT_EQ(outcome(), "cannot open: unable to open database file");
  std::filesystem::create_directory(path());
  EXPECT_EQ(outcome(), "cannot open: unable to open database file");
  std::filesystem::remove(path());
  ASSERT_EQ(::mkfifo(path().c_str(), 0600), 0);
  EXPECT_EQ(outcome(), "cannot open: unable to open database file") << "and nobody waits for the pipe";
  std::filesystem::remove(path());
  write(std::string(5000, 'x'));
  EXPECT_EQ(outcome(), "query: file is not a database");
}

const std::string kPlainVisits =
    "CREATE TABLE history_visits (history_item, visit_time, title, load_successful, redirect_destination);"
    "INSERT INTO history_visits VALUES (1, 5, 'Title', 1, NULL);";

TEST_F(SafariHistoryReaderTest, ForeignSchemas) {
  const std::string items =
      "CREATE TABLE history_items (id, url); INSERT INTO history_items VALUES (1, 'http://a/');";
  std::string endless = "CREATE VIEW w0 AS SELECT 1 AS id, 'http://a/' AS url;";
  std::string generated = "CREATE TABLE history_items (id, c0";
  for (int level = 1; level <= 40; ++level) {
    const std::string number = std::to_string(level);
    const std::string below = std::to_string(level - 1);
    endless += "CREATE VIEW w" + number + " AS SELECT id, url || url AS url FROM w" + below + ";";
    generated += ", c" + number + " AS (c" + below + " || c" + below + ")";
  }
  const struct {
    const char* what;
    std::string schema;
    std::string outcome;
  } cases[] = {
      {"plain", kPlainVisits + items, "1"},
      {"values of other types",
       kPlainVisits + items + "UPDATE history_visits SET visit_time = 'soon', title = 3", "1"},
      {"without a column", items + "CREATE TABLE history_visits (history_item)",
       "query: no such column: v.title"},
      {"without items", kPlainVisits, "query: no such table column: history_items."},
      {"a view that grows without end",
       kPlainVisits + endless + "CREATE VIEW history_items AS SELECT * FROM w40",
       "query: no such table column: history_items."},
      {"columns that grow without end", kPlainVisits + generated + ", url AS (c40))",
       "query: not a plain table: history_items"},
  };
  for (const auto& each : cases) {
    std::filesystem::remove(path());
    { const SafariDatabase made(path(), each.schema); }
    EXPECT_EQ(outcome(), each.outcome) << each.what;
  }
}

/// Every visit belongs to every item, which makes a small file into more than any memory holds.
TEST_F(SafariHistoryReaderTest, EndsWhatWouldNotEnd) {
  const auto rows = [](const char* count, const char* insertion) {
    return std::string("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT ") + count +
           ") " + insertion + " FROM n;";
  };
  for (const std::string& items :
       {rows("20000", "INSERT INTO history_items SELECT 1, 'http://a/'"),
        rows("50", "INSERT INTO history_items SELECT 1, 'http://a/' || hex(zeroblob(50000))")}) {
    std::filesystem::remove(path());
    {
      SafariDatabase made(path(), kPlainVisits + "CREATE TABLE history_items (id, url);" + items);
      made.run(rows("20000", "INSERT INTO history_visits SELECT 1, i, 'Title', 1, NULL"));
    }
    sqlite3_memory_highwater(1);
    std::size_t held = 0;
    for (const HistoryEntry& entry : read()) held += sizeof entry + entry.url.size() + entry.title.size();
    const std::size_t allowed = (66U << 20U) + 17 * std::filesystem::file_size(path());
    EXPECT_LE(held, allowed) << items;
    EXPECT_LE(static_cast<std::size_t>(sqlite3_memory_highwater(0)), allowed) << items;
  }
}

TEST_F(SafariHistoryReaderTest, ALockedDatabaseIsNotWaitedFor) {
  SafariDatabase database(path());
  database.run(kThreeVisits);
  database.run("BEGIN EXCLUSIVE");
  EXPECT_EQ(outcome(), "query: database is locked");
}

TEST_F(SafariHistoryReaderTest, NoDamageDoesHarm) {
  {
    SafariDatabase database(path());
    database.run("VACUUM; PRAGMA page_size = 512; VACUUM");
    database.run(kThreeVisits);
  }
  const std::string whole = bytes();
  for (std::size_t size = 0; size < whole.size(); size += 97) {
    write(whole.substr(0, size));
    (void)outcome();
  }
  for (std::size_t at = 0; at < whole.size(); at += 3) {
    for (const int value : {0, 0xFF}) {
      std::string changed = whole;
      changed[at] = static_cast<char>(value);
      write(changed);
      (void)outcome();
    }
  }
  write(whole);
  EXPECT_EQ(outcome(), "3");
}

}  // namespace
}  // namespace velto
