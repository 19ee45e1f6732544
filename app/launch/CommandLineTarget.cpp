#include "app/launch/CommandLineTarget.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velto {
namespace {

constexpr std::array<std::string_view, 6> kSchemes{"hovrel", "velto", "http",
                                                   "https",  "file",  "velto-player"};

}  // namespace

std::optional<CommandLineTarget> parseCommandLineTarget(std::string_view argument) {
  if (argument.starts_with('-')) return std::nullopt;
  const auto url = Url::parse(argument);
  if (!url) return std::nullopt;
  std::string scheme = url->lowercasedScheme();
  if (std::find(kSchemes.begin(), kSchemes.end(), scheme) == kSchemes.end()) return std::nullopt;
  return CommandLineTarget{std::move(scheme), *url};
}

}  // namespace velto
