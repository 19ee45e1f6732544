// A history of a million visits: to add one, beside a copy of the file and beside the plain way; to load it,
// beside simdjson's own parse of the bytes.

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <simdjson.h>
#include <stdlib.h>
#include <unistd.h>

#include "browsing/history/HistoryManager.h"
#include "browsing/history/HistoryStore.h"
#include "platform/foundation/PosixFileManager.h"
#include "platform/headless/HeadlessPlatform.h"

namespace velto {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kMillion = 1'000'000;

std::vector<HistoryEntry> visits(std::int64_t count) {
  std::vector<HistoryEntry> entries;
  for (std::int64_t number = 0; number < count; ++number) {
    const std::string page = std::to_string(number);
    entries.push_back({"https://www.example" + std::to_string(number % 5000) + ".com/articles/2024/" + page,
                       "Article “" + page + "” – a report on \"everything\"",
                       {1.7e9 - 31.0 * static_cast<double>(number)}});
  }
  return entries;
}

/// A folder, gone at the end, with a history of so many visits.
class Desk {
 public:
  explicit Desk(std::int64_t count) {
    std::string name = (fs::temp_directory_path() / "velto-history-XXXXXX").native();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    root = name;
    makeStore()->save(visits(count));
  }
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;
  ~Desk() { fs::remove_all(root); }

  /// One that knows nothing of the file yet.
  [[nodiscard]] std::shared_ptr<HistoryStore> makeStore() {
    return std::make_shared<HistoryStore>(files, root, HistoryStore::kPrimaryFileName, true);
  }
  [[nodiscard]] fs::path file() const { return root / HistoryStore::kPrimaryFileName; }

  PosixFileManager files;
  fs::path root;
};

Desk& desk(std::int64_t count) {
  static std::map<std::int64_t, std::unique_ptr<Desk>> desks;
  std::unique_ptr<Desk>& desk = desks[count];
  if (!desk) desk = std::make_unique<Desk>(count);
  return *desk;
}

/// Another page at each call.
HistoryEntry nextVisit() {
  static int number = 0;
  return {"https://new.example/" + std::to_string(++number), "A new page", {1.8e9}};
}

void recordKnown(benchmark::State& state) {
  const auto store = desk(state.range(0)).makeStore();
  store->record(nextVisit());
  for (auto run : state) store->record(nextVisit());
}

void recordFirst(benchmark::State& state) {
  for (auto run : state) desk(state.range(0)).makeStore()->record(nextVisit());
}

void recordPlainly(benchmark::State& state) {
  Desk& place = desk(state.range(0));
  for (auto run : state) {
    auto entries = decodeHistory(place.files.read(place.file()));
    entries.insert(entries.begin(), nextVisit());
    place.files.writeAtomically(place.file(), encodeHistory(entries, HistoryForm::pretty));
  }
}

void decodeAndEncodePlainly(benchmark::State& state) {
  const std::string text = desk(state.range(0)).files.read(desk(state.range(0)).file());
  for (auto run : state) {
    auto entries = decodeHistory(text);
    entries.insert(entries.begin(), nextVisit());
    benchmark::DoNotOptimize(encodeHistory(entries, HistoryForm::pretty));
  }
}

/// `cp` with its start, and `fsync`.
void copyAndFlush(benchmark::State& state) {
  Desk& place = desk(state.range(0));
  const fs::path copy = place.root / "copy";
  for (auto run : state) {
    fs::remove(copy);
    if (std::system(("cp " + place.file().native() + " " + copy.native()).c_str()) != 0)
      state.SkipWithError("cp");
    const int file = ::open(copy.c_str(), O_RDWR | O_CLOEXEC);
    if (::fsync(file) != 0) state.SkipWithError("fsync");
    ::close(file);
  }
  fs::remove(copy);
}

void load(benchmark::State& state) {
  Desk& place = desk(state.range(0));
  for (auto run : state) {
    const auto entries = place.makeStore()->load();
    state.PauseTiming();  // giving the memory back is not a part of it
    if (entries.size() < static_cast<std::size_t>(state.range(0))) state.SkipWithError("not loaded");
    { const auto dropped = std::move(entries); }
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(fs::file_size(place.file())));
}

void parseAlone(benchmark::State& state) {
  Desk& place = desk(state.range(0));
  const simdjson::padded_string text(place.files.read(place.file()));
  for (auto run : state) {
    auto parser = std::make_unique<simdjson::dom::parser>();
    if (parser->parse(text).error() != simdjson::SUCCESS) state.SkipWithError("not parsed");
    state.PauseTiming();
    parser.reset();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void newest(benchmark::State& state) {
  const auto store = desk(state.range(0)).makeStore();
  for (auto run : state) benchmark::DoNotOptimize(store->newest(15));
}

/// What the main thread does: the disk is left to the background, which stands still here.
void recordOnMainThread(benchmark::State& state) {
  HeadlessPlatform headless;
  HistoryManager manager(desk(state.range(0)).makeStore(), headless.platform().clock,
                         headless.platform().mainQueue, headless.backgroundQueue(), headless.notifications());
  headless.backgroundQueue().hold(true);
  const Url page = *Url::parse("https://example.com/page");
  for (auto run : state) manager.record(page, "A page");
}

constexpr auto kUnit = benchmark::kMillisecond;

BENCHMARK(recordKnown)
    ->Name("HistoryStore::record, file known, visits")
    ->RangeMultiplier(10)
    ->Range(1000, kMillion)
    ->Unit(kUnit)
    ->UseRealTime();
BENCHMARK(recordFirst)
    ->Name("HistoryStore::record, first of the process, visits")
    ->RangeMultiplier(10)
    ->Range(1000, kMillion)
    ->Unit(kUnit)
    ->UseRealTime();
BENCHMARK(copyAndFlush)
    ->Name("cp and fsync of the same file, visits")
    ->RangeMultiplier(10)
    ->Range(1000, kMillion)
    ->Unit(kUnit)
    ->UseRealTime();
BENCHMARK(recordPlainly)
    ->Name("load, insert, encode and save plainly, visits")
    ->Arg(1000)
    ->Arg(kMillion)
    ->Unit(kUnit)
    ->UseRealTime();
BENCHMARK(decodeAndEncodePlainly)
    ->Name("decode, insert and encode plainly, without the disk, visits")
    ->Arg(kMillion)
    ->Unit(kUnit)
    ->UseRealTime();
BENCHMARK(load)->Name("HistoryStore::load, visits")->Arg(1000)->Arg(kMillion)->Unit(kUnit)->UseRealTime();
BENCHMARK(parseAlone)
    ->Name("simdjson's parse of the same bytes, visits")
    ->Arg(1000)
    ->Arg(kMillion)
    ->Unit(kUnit)
    ->UseRealTime();
BENCHMARK(newest)
    ->Name("HistoryStore::newest(15), file known, visits")
    ->Arg(kMillion)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(recordOnMainThread)
    ->Name("HistoryManager::record on the main thread, visits")
    ->Arg(kMillion)
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(10000);

}  // namespace
}  // namespace velto
