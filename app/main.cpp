#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include "app/AbsentSubsystems.h"
#include "app/AppDelegate.h"
#include "app/opening/StandardHistory.h"
#include "app/pages/StandardPageContent.h"
#include "app/windows/StandardFurniture.h"
#include "app/windows/VeltoToast.h"
#include "browsing/safari/StandardSafari.h"
#include "handoff/Claim.h"
#include "handoff/HandoffError.h"
#include "handoff/Readiness.h"
#include "layouts/StandardLayouts.h"
#include "platform/gtk/GtkPlatform.h"

namespace velto {
namespace {

/// What a later start of the program hands over, as it reaches the one that runs. No argument is a click on
/// its icon.
void receive(Application& application, const std::vector<std::string>& arguments) {
  ApplicationDelegate* delegate = application.delegate();
  if (delegate == nullptr) return;
  if (!arguments.empty()) {
    delegate->applicationOpenArguments(arguments);
    return;
  }
  bool anyVisible = false;
  for (const Window* window : application.windows()) anyVisible = anyVisible || window->isVisible();
  delegate->applicationShouldHandleReopen(anyVisible);
}

int run(const Environment& environment, Readiness& readiness) {
  auto claim = claimOrHandOver(RuntimeDirectory::open(std::getenv("XDG_RUNTIME_DIR"), geteuid()),
                               environment.arguments);
  if (std::holds_alternative<HandedOver>(claim)) {
    readiness.ready();
    return 0;
  }

  GtkPlatform gtk(environment, {"velto-player", "velto-history"});
  const Platform& platform = gtk.platform();
  AbsentSubsystems absent(SafariDataSource::standard(environment, platform.files, platform.clock));
  VeltoToast toasts(platform.application, platform.clock, platform.mainQueue);
  StandardFurniture furniture(platform.clock, platform.mainQueue, platform.application.windowSystem());
  StandardLayouts layouts(platform, toasts);
  StandardHistory history(platform);
  StandardSafari safari(platform, history.safariImports(), toasts);
  StandardPageContent content(platform, layouts.sessions(), history.primary(), history.safariImports());
  const Services services =
      absent.services(layouts.sessions(), layouts.layouts(), history, safari.safariImport(), toasts);
  AppDelegate delegate(platform, services, furniture, content);
  platform.application.setDelegate(delegate);

  // The server goes first when this ends: its thread posts to the queue.
  const auto server = std::move(std::get<std::unique_ptr<HandoffServer>>(claim));
  std::atomic<bool> ended = false;
  server->serve([&platform, &ended](const std::vector<std::string>& arguments) {
    if (ended) throw std::runtime_error("The application is ending.");
    platform.mainQueue.async([&platform, arguments] { receive(platform.application, arguments); });
  });
  platform.application.launch();
  readiness.ready();
  gtk.run();
  ended = true;
  return 0;
}

}  // namespace
}  // namespace velto

int main(int argc, char** argv) {
  // Everything written from here on belongs to the person alone, also what the web engine keeps.
  umask(077);
  velto::Readiness readiness = velto::Readiness::takeFromEnvironment();
  const velto::Environment environment = velto::readEnvironment(argc, argv);
  if (argc == 2 && std::string(argv[1]) == "--version") {
    std::printf("velto-app %s\n", VELTO_VERSION);
    return 0;
  }
  try {
    return velto::run(environment, readiness);
  } catch (const std::exception& error) {
    readiness.failed(error.what());
    std::fprintf(stderr, "velto-app: %s\n", error.what());
    return 1;
  }
}
