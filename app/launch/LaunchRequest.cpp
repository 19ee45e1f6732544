#include "app/launch/LaunchRequest.h"

#include <utility>

#include "app/launch/LaunchQuery.h"
#include "app/launch/PlayerUrl.h"
#include "app/launch/Zoom.h"

namespace velto {
namespace {

/// A video that is asked for with a bad id is not replaced by the page in `url`.
std::optional<Url> targetOf(const LaunchQuery& query) {
  if (query.text("player") == "youtube") {
    if (const auto videoId = query.text("v")) {
      return playerLaunchURL(*videoId, query.isTrue("playing"), query.integer("t"));
    }
  }
  const auto url = query.text("url");
  return url ? Url::parse(*url) : std::nullopt;
}

}  // namespace

std::optional<ParsedLaunch> parseLaunchRequest(const Url& url, const LocalDomainPorts& ports) {
  const LaunchQuery query(url);
  const auto target = targetOf(query);
  if (!target) return std::nullopt;

  LaunchRequest request{
      .target = rewriteLocalDomain(*target, ports),
      .width = query.integer("width"),
      .height = query.integer("height"),
      .x = query.integer("x"),
      .y = query.integer("y"),
      .zoom = parseZoomValue(query.text("zoom")),
      .reuse = query.isTrue("reuse"),
      .background = query.isTrue("background"),
      .onTop = query.isTrue("onTop"),
      .noFocus = query.isTrue("noFocus"),
      .hide = query.isTrue("hide"),
      .incognito = query.isTrue("incognito"),
  };
  auto ticket = request.incognito ? query.text("cookieTicket") : std::nullopt;
  return ParsedLaunch{std::move(request), std::move(ticket)};
}

}  // namespace velto
