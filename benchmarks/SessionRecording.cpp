#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "app/windows/HovrelPanel.h"
#include "layouts/StandardLayouts.h"
#include "platform/headless/HeadlessPlatform.h"

namespace velto {
namespace {

class NoToasts : public Toasts {
  void show(const std::string&, const Window*) override {}
};

std::unique_ptr<HovrelPanel> openWindow(HeadlessPlatform& headless, std::size_t number) {
  const double place = 20.0 * static_cast<double>(number);
  auto panel = std::make_unique<HovrelPanel>(headless.application(), Rect{{place, place}, {420, 760}}, 0);
  auto container = std::make_unique<View>(Rect{{0, 0}, {420, 760}});
  auto& webView = container->addSubview(headless.webEngine().makeWebView(container->bounds(), {}));
  webView.load({*Url::parse("https://dashboards.example.com/team/page?id=" + std::to_string(number))});
  panel->webView = webView;
  panel->lastKnownScroll = LayoutScroll{0, 1250.5};
  panel->setContentView(std::move(container));
  panel->orderFrontRegardless();
  return panel;
}

/// What the main thread does: the disk is left to the background, which stands still here.
void recordSession(benchmark::State& state) {
  HeadlessPlatform headless;
  NoToasts toasts;
  StandardLayouts layouts(headless.platform(), toasts);
  std::vector<std::unique_ptr<HovrelPanel>> panels;
  for (std::size_t i = 0; i < static_cast<std::size_t>(state.range(0)); ++i)
    panels.push_back(openWindow(headless, i));
  headless.loop().drain();
  headless.backgroundQueue().hold(true);
  for (auto run : state) layouts.recorder().recordSessionNow();
}
BENCHMARK(recordSession)
    ->Name("SessionRecorder::recordSessionNow on the main thread, windows")
    ->Arg(1)
    ->Arg(50)
    ->Arg(500)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace velto
