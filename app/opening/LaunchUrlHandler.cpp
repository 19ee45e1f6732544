#include "app/opening/LaunchUrlHandler.h"

#include <utility>
#include <variant>

#include "app/launch/Address.h"
#include "app/launch/LaunchCommand.h"

namespace velto {

namespace {

template <class... Handlers>
struct Overloaded : Handlers... {
  using Handlers::operator()...;
};
template <class... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

}  // namespace

LaunchUrlHandler::LaunchUrlHandler(const Platform& platform, WindowOpener& opener, const Services& services,
                                   PendingLaunch& pending)
    : platform_(platform), opener_(opener), services_(services), pending_(pending) {}

void LaunchUrlHandler::handleLaunchURLs(const std::vector<Url>& urls) {
  for (const Url& url : urls) handle(url);
}

void LaunchUrlHandler::onMainQueue(Task step) {
  platform_.mainQueue.async([self = WeakPtr<LaunchUrlHandler>(*this), step = std::move(step)]() mutable {
    if (self) step();
  });
}

void LaunchUrlHandler::handle(const Url& url) {
  const auto ports = readLocalDomainPorts(platform_.defaults.dictionary(kLocalDomainPortsKey));
  auto command = parseLaunchUrl(url, ports);
  if (!command) return;
  std::visit(
      Overloaded{
          [this](LayoutCommand& layout) { services_.layouts.handleCommand(layout.url); },
          [this](ShowHistory& history) {
            onMainQueue([this, domain = std::move(history.domain)] { services_.history.show(domain); });
          },
          [this](ImportSafari& import) {
            onMainQueue([this, sync = import.sync, sites = std::move(import.sites)] {
              if (sync) {
                services_.signInSync.runCommand();
              } else {
                services_.safariImport.show(sites);
              }
            });
          },
          [this](PopOut& popOut) { queue(std::move(popOut.launch)); },
      },
      *command);
}

void LaunchUrlHandler::queue(ParsedLaunch launch) {
  pending_.hasPendingExplicitLaunchTarget = true;
  if (launch.cookieTicket) {
    if (auto cookies = services_.signInHandoff.redeem(*launch.cookieTicket)) {
      launch.request.cookies = std::move(*cookies);
    } else {
      services_.toasts.show("That sign-in handoff expired. Opened incognito, signed out.");
    }
  }
  onMainQueue([this, request = std::move(launch.request)] {
    opener_.applyLaunchRequest(request);
    pending_.hasPendingExplicitLaunchTarget = false;
  });
}

void LaunchUrlHandler::handleCommandLineTarget(const std::string& scheme, const Url& url) {
  if (scheme == "hovrel" || scheme == "velto") {
    handleLaunchURLs({url});
    return;
  }
  opener_.openWindow(url, {});
  pending_.hasPendingExplicitLaunchTarget = false;
}

}  // namespace velto
