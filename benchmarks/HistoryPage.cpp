// What the history page asks for, with a million visits: to read the files and write the rows, beside reading
// alone.

#include "browsing/history/HistoryPage.h"

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include "browsing/history/HistoryStore.h"
#include "platform/foundation/PosixFileManager.h"

namespace velto {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kOwn = 800'000;
constexpr std::int64_t kImported = 200'000;

std::vector<HistoryEntry> visits(std::int64_t count, double pause) {
  std::vector<HistoryEntry> entries;
  for (std::int64_t number = 0; number < count; ++number) {
    const std::string page = std::to_string(number);
    entries.push_back({"https://www.example" + std::to_string(number % 5000) + ".com/articles/2024/" + page,
                       "Article “" + page + "” – a report on \"everything\"",
                       {1.7e9 - pause * static_cast<double>(number)}});
  }
  return entries;
}

/// Both files, in a folder that is gone at the end.
class Files {
 public:
  Files() {
    std::string name = fs::temp_directory_path() / "velto-history-page-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the benchmark");
    folder_ = name;
    own().save(visits(kOwn, 31));
    imported().save(visits(kImported, 97));
  }
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;
  ~Files() { fs::remove_all(folder_); }

  HistoryStore own() { return {files_, folder_, HistoryStore::kPrimaryFileName, true}; }
  HistoryStore imported() { return {files_, folder_, HistoryStore::kSafariImportsFileName, false}; }

 private:
  PosixFileManager files_;
  fs::path folder_;
};

Files& files() {
  static Files made;
  return made;
}

void loadBoth(benchmark::State& state) {
  files();
  for (auto run : state) {
    benchmark::DoNotOptimize(files().own().load());
    benchmark::DoNotOptimize(files().imported().load());
  }
}
BENCHMARK(loadBoth)->Name("history page/load both files")->Unit(benchmark::kMillisecond);

void answer(benchmark::State& state) {
  files();
  for (auto run : state) {
    const std::string rows =
        HistoryPage::encodedRows(files().own().load(), files().imported().load(), std::nullopt);
    state.counters["MB"] = static_cast<double>(rows.size()) / 1e6;
  }
}
BENCHMARK(answer)->Name("history page/load both and write the rows")->Unit(benchmark::kMillisecond);

void answerForOneSite(benchmark::State& state) {
  files();
  for (auto run : state) {
    benchmark::DoNotOptimize(
        HistoryPage::encodedRows(files().own().load(), files().imported().load(), "example77.com"));
  }
}
BENCHMARK(answerForOneSite)->Name("history page/the same for one site")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velto
