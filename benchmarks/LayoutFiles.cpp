// Reading all layouts, with simdjson's own parse of the same bytes as the measure: in memory, where only the
// decoding counts, and from the disk, where opening the files does too.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <simdjson.h>
#include <stdlib.h>

#include "layouts/LayoutStore.h"
#include "layouts/VeltoSession.h"
#include "platform/foundation/PosixFileManager.h"
#include "platform/foundation/Uuid.h"
#include "platform/headless/MemoryFileManager.h"

namespace velto {
namespace {

constexpr int kLayouts = 1000;
constexpr int kWindows = 20;

LayoutWindow window(int number, const std::string& layoutId) {
  const double x = 37.5 * number;
  LayoutWindow window;
  window.id = makeUuid();
  window.url = "https://dashboards.example.com/d/" + window.id +
               "/overview?from=now-6h&panel=" + std::to_string(number);
  window.title = "Overview of service " + std::to_string(number) + " – Dashboards";
  window.displayKey = "1552:41231:0:1512x982";
  window.rect = {x, 24, 420, 760};
  window.normalized = {x / 1512, 24 / 944.0, 420 / 1512.0, 760 / 944.0};
  window.thumbnail = "thumbs/" + layoutId + "-" + window.id + ".png";
  window.scroll = LayoutScroll{0, 120.5 * number};
  window.capturedAt.secondsSince1970 = 1.772e9;
  return window;
}

Layout layout(int number) {
  Layout layout;
  layout.id = makeUuid();
  layout.name = "Layout number " + std::to_string(number);
  layout.createdAt.secondsSince1970 = 1.77e9 + number;
  layout.updatedAt.secondsSince1970 = 1.772e9 - 60.0 * number;
  layout.displays = {{"1552:41231:0:1512x982", "Display A", {1512, 982}, {0, 0, 1512, 944}, 2, true}};
  for (int each = 0; each < kWindows; ++each) layout.windows.push_back(window(each, layout.id));
  return layout;
}

/// The same layouts in memory and in a folder that goes at the end.
struct Desk {
  Desk() {
    std::string name = (std::filesystem::temp_directory_path() / "velto-layouts-XXXXXX").native();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    root = name;
    memory.createDirectory(root / "Layouts");
    disk.createDirectory(root / "Layouts");
    for (int number = 0; number < kLayouts; ++number) {
      const Layout made = layout(number);
      texts.push_back(encodeJson(made));
      paths.push_back(root / "Layouts" / (made.id + ".veltolayout.json"));
      bytes += static_cast<std::int64_t>(texts.back().size());
      memory.writeAtomically(paths.back(), texts.back());
      disk.writeAtomically(paths.back(), texts.back());
    }
  }
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;
  ~Desk() { std::filesystem::remove_all(root); }

  std::filesystem::path root;
  MemoryFileManager memory;
  PosixFileManager disk;
  std::vector<std::string> texts;
  std::vector<std::filesystem::path> paths;
  std::int64_t bytes = 0;
};

Desk& desk() {
  static Desk desk;
  return desk;
}

void loadAll(benchmark::State& state, FileManager& files) {
  NotificationCenter notifications;
  const LayoutStore store(files, notifications, desk().root);
  for (auto run : state) {
    LayoutStore::Contents contents = store.loadAll();
    state.PauseTiming();  // letting go of them is not part of loading
    if (contents.layouts.size() != kLayouts) state.SkipWithError("layouts are missing");
    contents = {};
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * desk().bytes);
}

void parseMemory(benchmark::State& state) {
  simdjson::dom::parser parser;
  desk();  // made before the time is taken
  for (auto run : state) {
    for (const std::string& text : desk().texts) {
      if (parser.parse(text).error() != simdjson::SUCCESS) state.SkipWithError("no JSON");
    }
  }
  state.SetBytesProcessed(state.iterations() * desk().bytes);
}
BENCHMARK(parseMemory)->Name("baseline: simdjson, 1000 layouts in memory")->Unit(benchmark::kMillisecond);

void loadMemory(benchmark::State& state) { loadAll(state, desk().memory); }
BENCHMARK(loadMemory)->Name("loadAll, 1000 layouts in memory")->Unit(benchmark::kMillisecond);

void parseDisk(benchmark::State& state) {
  simdjson::dom::parser parser;
  for (auto run : state) {
    for (const auto& path : desk().paths) {
      if (parser.load(path.native()).error() != simdjson::SUCCESS) state.SkipWithError("no JSON");
    }
  }
  state.SetBytesProcessed(state.iterations() * desk().bytes);
}
BENCHMARK(parseDisk)->Name("baseline: simdjson, 1000 layouts on disk")->Unit(benchmark::kMillisecond);

void loadDisk(benchmark::State& state) { loadAll(state, desk().disk); }
BENCHMARK(loadDisk)->Name("loadAll, 1000 layouts on disk")->Unit(benchmark::kMillisecond);

void encodeSession(benchmark::State& state) {
  VeltoSession session;
  for (int number = 0; number < 50; ++number) session.windows.push_back(window(number, "session"));
  for (auto run : state) benchmark::DoNotOptimize(encodeJson(session));
}
BENCHMARK(encodeSession)->Name("a session of 50 windows as text")->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace velto
