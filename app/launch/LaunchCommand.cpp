#include "app/launch/LaunchCommand.h"

#include <utility>

#include "app/launch/LaunchQuery.h"

namespace velto {
namespace {

ImportSafari importCommand(const LaunchQuery& query) {
  if (query.isTrue("sync")) return {.sync = true};
  return {.sync = false, .sites = query.text("sites")};
}

}  // namespace

std::optional<LaunchCommand> parseLaunchUrl(const Url& url, const LocalDomainPorts& ports) {
  const std::string scheme = url.scheme();
  if (scheme != "velto" && scheme != "hovrel") return std::nullopt;

  const auto host = url.lowercasedHost();
  if (host == "layout") return LayoutCommand{url};
  if (host == "history") return ShowHistory{LaunchQuery(url).text("domain")};
  if (host == "import-safari") return importCommand(LaunchQuery(url));

  auto launch = parseLaunchRequest(url, ports);
  if (!launch) return std::nullopt;
  return PopOut{std::move(*launch)};
}

}  // namespace velto
