// What is read at every opening of a page: the texts that come from outside. `boost::urls::parse_uri` is the
// measure for Url::parse; it gives a view and checks nothing beyond the grammar.

#include <array>
#include <boost/url/parse.hpp>
#include <cstdint>
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>

#include "app/launch/Address.h"
#include "app/launch/LaunchCommand.h"
#include "handoff/Frame.h"
#include "platform/foundation/Url.h"

namespace velto {
namespace {

constexpr std::array<std::string_view, 3> kPages = {
    "http://localhost:3000/",
    "https://docs.example.org:8443/guide/index.html?lang=en&theme=dark&page=2#installation",
    "https://user@www.example.com/a/rather/long/path/with%20escapes/and-more?query=caf%C3%A9&redirect="
    "https%3A%2F%2Fexample.org%2Fback%3Ffrom%3Dhere&session=0123456789abcdef0123456789abcdef",
};

constexpr std::string_view kLaunch =
    "velto://open?url=http%3A%2F%2Flocalhost%3A3000&width=420&height=760&x=0&y=0&zoom=150%25&onTop=true";

constexpr std::array<std::string_view, 4> kTyped = {"3000", "localhost:8080/admin", "example.com/path?x=1",
                                                    "https://www.example.com/"};

void urlParse(benchmark::State& state) {
  const std::string_view page = kPages.at(static_cast<std::size_t>(state.range(0)));
  for (auto run : state) benchmark::DoNotOptimize(Url::parse(page));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(page.size()));
}
BENCHMARK(urlParse)->Name("Url::parse")->DenseRange(0, kPages.size() - 1);

void boostParse(benchmark::State& state) {
  const std::string_view page = kPages.at(static_cast<std::size_t>(state.range(0)));
  for (auto run : state) benchmark::DoNotOptimize(boost::urls::parse_uri(page));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(page.size()));
}
BENCHMARK(boostParse)->Name("baseline: boost::urls::parse_uri")->DenseRange(0, kPages.size() - 1);

void launchUrl(benchmark::State& state) {
  const LocalDomainPorts none;
  for (auto run : state) benchmark::DoNotOptimize(parseLaunchUrl(*Url::parse(kLaunch), none));
}
BENCHMARK(launchUrl)->Name("parseLaunchUrl of a whole command");

void address(benchmark::State& state) {
  const LocalDomainPorts none;
  for (auto run : state) {
    for (const std::string_view text : kTyped) benchmark::DoNotOptimize(normalizedAddressURL(text, none));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kTyped.size()));
}
BENCHMARK(address)->Name("normalizedAddressURL");

void frame(benchmark::State& state) {
  const std::string bytes = encodeFrame({std::string(static_cast<std::size_t>(state.range(0)), 'a')});
  for (auto run : state) {
    FrameDecoder decoder;
    benchmark::DoNotOptimize(decoder.feed(bytes));
    benchmark::DoNotOptimize(decoder.takeArguments());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}
BENCHMARK(frame)->Name("FrameDecoder, one argument of")->Arg(100)->Arg(100'000);

}  // namespace
}  // namespace velto
