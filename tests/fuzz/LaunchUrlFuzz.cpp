#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <variant>

#include "app/launch/CommandLineTarget.h"
#include "app/launch/LaunchCommand.h"
#include "app/launch/Zoom.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

void check(const velto::ParsedLaunch& launch, const velto::LocalDomainPorts& ports) {
  const velto::LaunchRequest& request = launch.request;
  require(velto::rewriteLocalDomain(request.target, ports) == request.target);
  require(!request.zoom || velto::clampZoom(*request.zoom) == *request.zoom);
  require(!launch.cookieTicket || request.incognito);
  require(request.cookies.empty());
}

void checkUrl(const velto::Url& url) {
  const velto::LocalDomainPorts ports{{"a.local", 4000}};
  const auto command = velto::parseLaunchUrl(url, ports);
  if (!command) return;
  require(url.scheme() == "velto" || url.scheme() == "hovrel");
  if (const auto* popOut = std::get_if<velto::PopOut>(&*command)) check(popOut->launch, ports);
  if (const auto* safari = std::get_if<velto::ImportSafari>(&*command))
    require(!safari->sync || !safari->sites);
}

}  // namespace

/// The input is taken as a whole URL, as a process argument and as the query of a pop-out URL.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (const auto url = velto::Url::parse(text)) checkUrl(*url);
  if (const auto url = velto::Url::parse("velto://open?" + text)) checkUrl(*url);
  if (const auto target = velto::parseCommandLineTarget(text)) {
    require(!text.starts_with('-'));
    require(target->url.lowercasedScheme() == target->scheme);
    checkUrl(target->url);
  }
  return 0;
}
