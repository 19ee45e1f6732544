// Reading Safari's two files: the cookies as bytes a second, and the visits with a bare loop over the rows of
// the same statement as the measure.

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <stdlib.h>

#include "browsing/safari/SafariBinaryCookies.h"
#include "browsing/safari/SafariHistoryReader.h"
#include "tests/support/CookieFileWriter.h"
#include "tests/support/SafariDatabase.h"

namespace velto {
namespace {

constexpr int kPages = 4000;
constexpr int kCookiesInPage = 25;
constexpr int kItems = 200'000;
constexpr int kVisits = 1'000'000;

/// Names and lengths as the big sites have them: half of the values are longer than a hundred bytes.
std::string cookies() {
  std::vector<std::string> pages;
  for (int page = 0; page < kPages; ++page) {
    std::vector<std::string> records;
    for (int number = 0; number < kCookiesInPage; ++number) {
      records.push_back(cookieRecord({.domain = ".shop" + std::to_string(page) + ".example.com",
                                      .name = number % 2 == 0 ? "_ga" : "session_token",
                                      .path = "/",
                                      .value = std::string(number % 2 == 0 ? 27 : 180, 'v'),
                                      .expires = {1.8e9 + number},
                                      .isSecure = true,
                                      .created = WallTime{1.7e9}}));
    }
    pages.push_back(cookiePage(records));
  }
  return cookieFile(pages);
}

void parseCookies(benchmark::State& state) {
  const std::string file = cookies();
  for (auto run : state) {
    auto parsed = SafariBinaryCookies::parse(file);
    state.PauseTiming();  // letting go of them is not part of parsing
    if (parsed.size() != std::size_t{kPages} * kCookiesInPage) state.SkipWithError("cookies are missing");
    parsed = {};
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.size()));
}
BENCHMARK(parseCookies)->Name("parse, 100000 cookies")->Unit(benchmark::kMillisecond);

/// A database in a folder that goes at the end.
class Visits {
 public:
  Visits() {
    std::string name = (std::filesystem::temp_directory_path() / "velto-safari-XXXXXX").native();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    root_ = name;
    SafariDatabase database(path());
    database.run("BEGIN;" + counting(kItems) +
                 "INSERT INTO history_items (url) SELECT 'https://www.example' || (n % 997) ||"
                 " '.com/articles/2024/' || n || '?utm_source=feed&page=' || (n % 7) FROM numbers;" +
                 counting(kVisits) +
                 "INSERT INTO history_visits (history_item, visit_time, title) SELECT 1 + n * 7919 % " +
                 std::to_string(kItems) + ", 700000000.5 + n * 37 % 1000003," +
                 " 'The title of article number ' || n FROM numbers; COMMIT");
  }
  Visits(const Visits&) = delete;
  Visits& operator=(const Visits&) = delete;
  ~Visits() { std::filesystem::remove_all(root_); }
  [[nodiscard]] std::filesystem::path path() const { return root_ / "History.db"; }

 private:
  static std::string counting(int count) {
    return "DROP TABLE IF EXISTS numbers; CREATE TEMPORARY TABLE numbers (n);"
           "INSERT INTO numbers WITH RECURSIVE c(n) AS (SELECT 0 UNION ALL SELECT n + 1 FROM c WHERE n + 1 "
           "< " +
           std::to_string(count) + ") SELECT n FROM c;";
  }

  std::filesystem::path root_;
};

const Visits& visits() {
  static const Visits visits;
  return visits;
}

void stepThroughVisits(benchmark::State& state) {
  constexpr const char* kStatement =
      "SELECT i.url, v.title, v.visit_time\n"
      "FROM history_visits v JOIN history_items i ON i.id = v.history_item\n"
      "WHERE v.load_successful = 1 AND v.redirect_destination IS NULL\n"
      "ORDER BY v.visit_time DESC";
  visits();  // made before the time is taken
  for (auto run : state) {
    sqlite3* database = nullptr;
    sqlite3_stmt* statement = nullptr;
    sqlite3_open_v2(visits().path().c_str(), &database, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_prepare_v2(database, kStatement, -1, &statement, nullptr);
    int rows = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) ++rows;
    if (rows != kVisits) state.SkipWithError("rows are missing");
    sqlite3_finalize(statement);
    sqlite3_close(database);
  }
}
BENCHMARK(stepThroughVisits)->Name("baseline: sqlite3_step, 1000000 visits")->Unit(benchmark::kMillisecond);

void readVisits(benchmark::State& state, const SafariSiteFilter& filter, std::size_t expected) {
  visits();
  for (auto run : state) {
    auto read = SafariHistoryReader::read(visits().path(), filter);
    state.PauseTiming();
    if (read.size() != expected) state.SkipWithError("visits are missing");
    read = {};
    state.ResumeTiming();
  }
}
BENCHMARK_CAPTURE(readVisits, all, SafariSiteFilter{}, kVisits)
    ->Name("read, 1000000 visits")
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velto
