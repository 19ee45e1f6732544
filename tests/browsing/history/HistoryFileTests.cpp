#include <string>

#include <gtest/gtest.h>

#include "browsing/history/HistoryFile.h"

namespace velto {
namespace {

/// A disk with at most one file, whatever its path.
class OneFile final : public FileManager {
 public:
  explicit OneFile(std::optional<std::string> contents) : contents_(std::move(contents)) {}

  std::string read(const Path&) const override {
    if (!contents_) throw FileError(FileError::Kind::notFound, "missing");
    return *contents_;
  }
  void writeAtomically(const Path&, std::string_view) override { refuse(); }
  void append(const Path&, std::string_view) override { refuse(); }
  void createDirectory(const Path&) override { refuse(); }
  void remove(const Path&) override { refuse(); }
  void rename(const Path&, const Path&) override { refuse(); }
  std::vector<std::string> list(const Path&) const override { return {}; }
  std::optional<FileInfo> info(const Path&) const override { return std::nullopt; }

 private:
  static void refuse() { throw FileError(FileError::Kind::notPermitted, "read only"); }
  std::optional<std::string> contents_;
};

std::vector<HistoryEntry> read(std::optional<std::string> contents) {
  return readHistoryFile(OneFile(std::move(contents)), "/History.json");
}

const std::string kGood = R"({"url":"https://a/","title":"A","timestamp":"2024-01-02T03:04:05Z"})";

TEST(HistoryFile, keepsTheOrderOfTheFile) {
  const std::vector<HistoryEntry> expected{
      {"https://b/?q=\u00e9", "", {1704164645}},
      {"not a url", "Title \"two\"", {0}},
  };
  EXPECT_EQ(read(R"([
    {"title" : "", "url" : "https:\/\/b/?q=é", "timestamp" : "2024-01-02T03:04:05Z", "extra" : [1, {}]},
    {"url" : "not a url", "title" : "Title \"two\"", "timestamp" : "1970-01-01T02:00:00+02:00"}
  ])"),
            expected);
  EXPECT_TRUE(read("[]").empty());
}

TEST(HistoryFile, oneBadEntryMakesTheFileEmpty) {
  EXPECT_EQ(read("[" + kGood + "]").size(), 1U);
  for (const char* bad : {
           R"({"title":"A","timestamp":"2024-01-02T03:04:05Z"})",
           R"({"url":"https://a/","timestamp":"2024-01-02T03:04:05Z"})",
           R"({"url":"https://a/","title":"A"})",
           R"({"url":null,"title":"A","timestamp":"2024-01-02T03:04:05Z"})",
           R"({"url":"https://a/","title":1,"timestamp":"2024-01-02T03:04:05Z"})",
           R"({"url":"https://a/","title":"A","timestamp":1704164645})",
           R"({"url":"https://a/","title":"A","timestamp":"yesterday"})",
           R"({"URL":"https://a/","title":"A","timestamp":"2024-01-02T03:04:05Z"})",
           "null",
           "[]",
           "7",
       }) {
    EXPECT_TRUE(read("[" + kGood + "," + bad + "]").empty()) << bad;
  }
}

TEST(HistoryFile, whatIsNoListOfEntriesIsEmpty) {
  EXPECT_TRUE(read(std::nullopt).empty());
  for (const std::string& text : {std::string(), std::string("null"), std::string("{}"), kGood, "[" + kGood,
                                  "[" + kGood + "]]", "[" + kGood + "\xff]", std::string(100'000, '[')}) {
    EXPECT_TRUE(read(text).empty()) << text.substr(0, 100);
  }
}

TEST(HistoryFile, theFirstWebPageIsTheFirstThatIsHttp) {
  const auto entry = [](std::string url) { return HistoryEntry{std::move(url), "", {}}; };
  EXPECT_EQ(firstWebPage({}), std::nullopt);
  EXPECT_EQ(firstWebPage({entry("about:blank"), entry("file:///a"), entry("a b")}), std::nullopt);
  EXPECT_EQ(firstWebPage({entry("velto-player://youtube?v=abcdefghijk"), entry("https://example.com/"),
                          entry("http://b")}),
            Url::parse("https://example.com/"));
  EXPECT_EQ(firstWebPage({entry(""), entry("example.com"), entry("HTTP://B/")}), Url::parse("HTTP://B/"));
}

}  // namespace
}  // namespace velto
