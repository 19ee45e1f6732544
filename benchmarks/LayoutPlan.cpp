// Planning where the windows of a layout go, from a handful of windows to more than anybody has.

#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "layouts/LayoutCapture.h"
#include "layouts/LayoutRestorePlan.h"

namespace velto {
namespace {

constexpr std::size_t kDisplays = 8;

std::vector<LayoutDisplaySnapshot> displays(double width, double height) {
  std::vector<LayoutDisplaySnapshot> made;
  for (std::size_t i = 0; i < kDisplays; ++i) {
    const Rect frame{{static_cast<double>(i) * width, 0}, {width, height}};
    made.push_back(
        {"1552:41231:" + std::to_string(i + 1) + ":1920x1080", "Display", frame, frame, 1, i == 0});
  }
  return made;
}

/// Tiles that touch their neighbours on both axes, spread over all displays. In a column, all tiles of a
/// display end at one of two edges, which is the worst case for finding out who touches whom.
Layout tiled(std::size_t windows, bool inColumns) {
  const auto saved = displays(1920, 1080);
  Layout layout;
  for (const auto& display : saved) layout.displays.push_back(layoutDisplay(display));
  const std::size_t columns = inColumns ? 2 : 32;
  for (std::size_t i = 0; i < windows; ++i) {
    const std::size_t place = i / kDisplays;
    LayoutWindow window;
    window.id = "4E6D1B2C-8F10-4A55-9C3E-" + std::to_string(100'000'000'000 + i);
    window.url = "https://dashboards.example.com/team/page-" + std::to_string(i);
    window.title = "Page " + std::to_string(i);
    window.displayKey = saved[i % kDisplays].key;
    window.rect = {60.0 * static_cast<double>(place % columns), 50.0 * static_cast<double>(place / columns),
                   60, 50};
    window.anchors = anchorsOf(window.rect, {1920, 1080});
    layout.windows.push_back(window);
  }
  return layout;
}

void plan(benchmark::State& state, bool inColumns) {
  const Layout layout = tiled(static_cast<std::size_t>(state.range(0)), inColumns);
  const auto current = displays(1512, 944);
  for (auto run : state) benchmark::DoNotOptimize(LayoutRestorePlan::plan(layout, current));
  state.SetComplexityN(state.range(0));
}
BENCHMARK_CAPTURE(plan, grid, false)
    ->Name("LayoutRestorePlan::plan, 8 displays, a grid of")
    ->RangeMultiplier(10)
    ->Range(10, 10'000)
    ->Unit(benchmark::kMicrosecond)
    ->Complexity();
BENCHMARK_CAPTURE(plan, columns, true)
    ->Name("LayoutRestorePlan::plan, 8 displays, two columns of")
    ->RangeMultiplier(10)
    ->Range(10, 10'000)
    ->Unit(benchmark::kMicrosecond)
    ->Complexity();

}  // namespace
}  // namespace velto
