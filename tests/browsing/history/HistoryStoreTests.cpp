#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "browsing/history/HistoryStore.h"
#include "platform/foundation/PosixFileManager.h"
#include "platform/headless/MemoryFileManager.h"
#include "tests/support/TemporaryFolder.h"

namespace velto {
namespace {

namespace fs = std::filesystem;

const std::string kGood = R"({"url":"https://a/","title":"A","timestamp":"2024-01-02T03:04:05Z"})";

/// What a store does, done in the plain way.
class PlainStore {
 public:
  PlainStore(FileManager& files, fs::path file, HistoryForm form)
      : files_(files), file_(std::move(file)), form_(form) {}

  [[nodiscard]] std::vector<HistoryEntry> load() const {
    try {
      return decodeHistory(files_.readIfPossible(file_).value_or(""));
    } catch (const JsonError&) {
      return {};
    }
  }
  [[nodiscard]] std::string textWith(const std::vector<HistoryEntry>& visits) const {
    auto entries = load();
    for (const HistoryEntry& entry : visits) {
      if (!entries.empty() && entries.front().url == entry.url) entries.erase(entries.begin());
      entries.insert(entries.begin(), entry);
    }
    return encodeHistory(entries, form_);
  }

 private:
  FileManager& files_;
  fs::path file_;
  HistoryForm form_;
};

class HistoryStoreTest : public testing::Test {
 protected:
  void put(const std::string& text) {
    files_.createDirectory("/data");
    files_.writeAtomically("/data/History.json", text);
  }
  std::vector<HistoryEntry> loaded(const std::string& text) {
    put(text);
    return store_.load();
  }

  MemoryFileManager files_;
  HistoryStore store_{files_, "/data", HistoryStore::kPrimaryFileName, true};
};

TEST_F(HistoryStoreTest, KeepsTheOrderOfTheFileWhoeverWroteIt) {
  const std::vector<HistoryEntry> expected{{"https://b/?q=é", "", {1704164645}},
                                           {"not a url", "Title \"two\"", {0}}};
  EXPECT_EQ(loaded(R"([
    {"title" : "", "url" : "https:\/\/b/?q=\u00e9", "timestamp" : "2024-01-02T03:04:05Z", "extra" : [1, {}]},
    {"url" : "not a url", "title" : "Title \"two\"", "timestamp" : "1970-01-01T02:00:00+02:00", "url" : 1}
  ])"),
            expected);
  store_.save(expected);
  EXPECT_EQ(store_.load(), expected);
  EXPECT_EQ(store_.newest(1), std::vector<HistoryEntry>{expected.front()});
  EXPECT_EQ(store_.newest(9), expected);
  EXPECT_TRUE(store_.newest(0).empty());
}

TEST_F(HistoryStoreTest, WhatCannotBeReadIsEmpty) {
  EXPECT_EQ(loaded("[" + kGood + "]").size(), 1U);
  for (const std::string& text :
       {std::string(), std::string("{}"), kGood, "[" + kGood, "[" + kGood + "]]", "[" + kGood + "\xff]",
        "[" + kGood + ",null]", "[" + kGood + R"(,{"url":"u","title":"","timestamp":1704164645}])",
        std::string(100'000, '[')}) {
    EXPECT_TRUE(loaded(text).empty()) << text.substr(0, 100);
    EXPECT_TRUE(store_.newest(3).empty());
  }
  // In the form in which it is written here, with bytes that are no text.
  const std::string written =
      encodeHistory(std::vector<HistoryEntry>{{"u", "title", {}}}, HistoryForm::pretty);
  EXPECT_TRUE(loaded(std::string(written).replace(written.find("title\","), 1, "\xff")).empty());
}

TEST_F(HistoryStoreTest, AReloadReplacesAndAReturnAdds) {
  store_.record({"https://a/", "A", {1}});
  store_.record({"https://a/", "A again", {2}});
  store_.record({"https://b/", "B", {3}});
  store_.record({"https://a/", "A once more", {4}});
  EXPECT_EQ(store_.load(), (std::vector<HistoryEntry>{{"https://a/", "A once more", {4}},
                                                      {"https://b/", "B", {3}},
                                                      {"https://a/", "A again", {2}}}));
}

TEST_F(HistoryStoreTest, TheNewestWebPageIsTheFirstThatIsHttp) {
  std::vector<std::string> many(100, "example.com");
  many.emplace_back("HTTP://B/");
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{"about:blank", "file:///a", "a b", ""}, "none"},
      {{"velto-player://youtube?v=abcdefghijk", "https://example.com/", "http://b"}, "https://example.com/"},
      {many, "HTTP://B/"},
  };
  for (const auto& [urls, newest] : cases) {
    std::vector<HistoryEntry> entries;
    for (const std::string& each : urls) entries.push_back({each, "", {}});
    store_.save(entries);
    const auto page = newestWebPage(store_);
    EXPECT_EQ(page ? page->absoluteString() : "none", newest);
  }
}

/// Visits between which somebody else changes the file: each must give what the plain way gives.
class HistoryAgainstPlain {
 public:
  HistoryAgainstPlain(FileManager& files, const fs::path& folder, HistoryForm form, unsigned seed)
      : files_(files),
        file_(folder / "h.json"),
        form_(form),
        store_(files, folder, "h.json", form == HistoryForm::pretty),
        plain_(files, file_, form),
        random_(seed) {
    files_.createDirectory(folder);
  }

  void step() {
    if (below(3) == 0) disturb();
    const auto before = plain_.load();
    ASSERT_EQ(store_.newest(2).size(), std::min<std::size_t>(2, before.size()));
    if (below(4) == 0) {
      ASSERT_EQ(store_.load(), before);
    }
    std::vector<HistoryEntry> visits(1 + below(3));
    for (HistoryEntry& visit : visits) {
      visit = {"https://" + std::to_string(below(3)) + ".example/",
               std::string(below(9), '"') + "ü\n",
               {1.7e9 + below(100000) / 2.0}};
    }
    const std::string expected = plain_.textWith(visits);
    store_.recordAll(visits);
    ASSERT_EQ(files_.read(file_), expected);
  }

 private:
  unsigned below(unsigned limit) { return std::uniform_int_distribution<unsigned>(0, limit - 1)(random_); }

  void disturb() {
    std::string text = files_.readIfPossible(file_).value_or("");
    const std::size_t at = text.empty() ? 0 : below(static_cast<unsigned>(text.size()));
    switch (below(8)) {
      case 0:
        if (files_.exists(file_)) files_.remove(file_);
        return;
      case 1:
        files_.append(file_, below(2) == 0 ? "\n" : "x");
        return;
      case 2:
        text.resize(at);
        break;
      case 3:
        if (!text.empty()) text[at] = static_cast<char>(below(256));
        break;
      case 4:
        text = encodeHistory(plain_.load(),
                             form_ == HistoryForm::pretty ? HistoryForm::compact : HistoryForm::pretty);
        break;
      case 5:
        text = encodeHistory({}, form_);
        break;
      case 6:
        text = "[" + kGood + "," + kGood + "]";
        break;
      default:
        text = encodeHistory(std::vector<HistoryEntry>(below(2) == 0 ? below(4000) : 2,
                                                       {"https://0.example/", "many", {1.6e9}}),
                             form_);
        break;
    }
    files_.writeAtomically(file_, text);
  }

  FileManager& files_;
  fs::path file_;
  HistoryForm form_;
  HistoryStore store_;
  PlainStore plain_;
  std::mt19937 random_;
};

TEST(HistoryStoreProperty, RecordingEqualsToLoadChangeAndSave) {
  const test::TemporaryFolder disk;
  PosixFileManager real;
  MemoryFileManager memory;
  for (const HistoryForm form : {HistoryForm::pretty, HistoryForm::compact}) {
    for (unsigned seed = 0; seed < 12; ++seed) {
      SCOPED_TRACE(seed);
      const bool onDisk = seed == 0;
      FileManager& files = onDisk ? static_cast<FileManager&>(real) : memory;
      HistoryAgainstPlain test(files, (onDisk ? disk.path : fs::path("/")) / std::to_string(seed), form,
                               seed);
      for (int step = 0; step < 25; ++step) ASSERT_NO_FATAL_FAILURE(test.step());
    }
  }
}

TEST(HistoryStoreOnDisk, WhoeverEditsTheFileInPlaceIsNoticed) {
  const test::TemporaryFolder disk;
  PosixFileManager files;
  HistoryStore store(files, disk.path, "History.json", true);
  store.record({"https://a/", "A", {1}});
  store.record({"https://b/", "B", {2}});
  store.record({"https://c/", "C", {3}});
  const auto before = files.info(store.fileURL());
  const fs::file_time_type modified = fs::last_write_time(store.fileURL());
  // Until the clock of the file system has gone on.
  while (files.info(store.fileURL())->changed == before->changed) {
    std::fstream file(store.fileURL(), std::ios::in | std::ios::out);
    file.seekp(static_cast<std::streamoff>(files.read(store.fileURL()).find("https://a/")));
    file << "https://x/" << std::flush;
    fs::last_write_time(store.fileURL(), modified);
  }
  store.record({"https://d/", "D", {4}});
  ASSERT_EQ(store.load().size(), 4U);
  EXPECT_EQ(store.load().back().url, "https://x/");

  // A link is replaced by a file, and what it led to stays.
  fs::rename(store.fileURL(), disk.path / "elsewhere");
  fs::create_symlink("elsewhere", store.fileURL());
  store.record({"https://e/", "E", {5}});
  EXPECT_FALSE(fs::is_symlink(store.fileURL()));
  EXPECT_EQ(store.load().size(), 5U);
  EXPECT_EQ(decodeHistory(files.read(disk.path / "elsewhere")).size(), 4U);
  struct stat status {};
  ASSERT_EQ(::stat(store.fileURL().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(HistoryStoreTest, AnyCallMayFail) {
  for (const bool warm : {false, true}) {
    bool failed = true;
    for (int call = 1; failed; ++call) {
      MemoryFileManager files;
      HistoryStore store(files, "/data", "History.json", true);
      store.record({"https://a/", "A", {1}});
      if (warm) {
        EXPECT_EQ(store.newest(1).size(), 1U);
      }
      const int before = files.callCount();
      files.failCall(call);
      try {
        store.record({"https://b/", "B", {2}});
      } catch (const FileError&) {
      }
      failed = files.callCount() - before >= call;
      files.stopFailing();
      // The old file, the new one, or, when the old one could not be read, the visit alone.
      const auto entries = store.load();
      ASSERT_FALSE(entries.empty()) << call;
      EXPECT_EQ(files.list("/data").size(), 1U);
    }
  }
}

TEST(LegacyHistory, MovesOnlyWhatIsSafelyThere) {
  using Outcome = LegacyHistoryMigration::Outcome;
  const char* whole =
      R"([{"url":"https://a/","title":"A","timestamp":725857445},{"timestamp":0,"title":"","url":"b"}])";
  const char* fraction = R"([{"url":"https://a/","title":"A","timestamp":725857445.25}])";
  const struct {
    const char* name;
    const char* legacy;
    const char* file;
    LegacyHistoryMigration expected;
    bool keyStays;
    std::size_t entries;
  } cases[] = {
      {"nothing anywhere", nullptr, nullptr, {Outcome::nothingToMigrate}, false, 0},
      {"moved", whole, nullptr, {Outcome::migrated, 2}, false, 2},
      {"fractions do not come back", fraction, nullptr, {Outcome::failed}, true, 1},
      {"a file is there", whole, "[]", {Outcome::alreadyOnDisk}, false, 0},
      {"a damaged file is there", whole, "x", {Outcome::alreadyOnDisk}, false, 0},
      {"damaged", "[{]", nullptr, {Outcome::failed}, true, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    MemoryFileManager files;
    UserDefaults defaults(files, "/preferences.plist");
    HistoryStore store(files, "/data", "History.json", true);
    const std::string legacy = c.legacy == nullptr ? "" : c.legacy;
    if (c.legacy != nullptr)
      defaults.set(HistoryStore::kLegacyKey, PropertyList::Data(legacy.begin(), legacy.end()));
    files.createDirectory("/data");
    if (c.file != nullptr) files.writeAtomically("/data/History.json", c.file);
    EXPECT_EQ(store.migrateLegacyDefaults(defaults), c.expected);
    EXPECT_EQ(defaults.value(HistoryStore::kLegacyKey).has_value(), c.keyStays);
    EXPECT_EQ(store.load().size(), c.entries);
  }
}

TEST(LegacyHistory, StaysWhereItIsWhenTheFileCannotBeWritten) {
  MemoryFileManager files;
  UserDefaults defaults(files, "/preferences.plist");
  HistoryStore store(files, "/data", "History.json", true);
  defaults.set(HistoryStore::kLegacyKey, PropertyList::Data{'[', ']'});
  files.failAllCalls(FileError::Kind::noSpace);
  EXPECT_EQ(store.migrateLegacyDefaults(defaults).outcome, LegacyHistoryMigration::Outcome::failed);
  files.stopFailing();
  EXPECT_TRUE(defaults.value(HistoryStore::kLegacyKey).has_value());
}

}  // namespace
}  // namespace velto
