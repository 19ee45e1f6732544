#include "app/AppDelegate.h"

#include <utility>
#include <variant>

#include "app/LaunchDecision.h"
#include "app/launch/CommandLineTarget.h"
#include "app/launch/LaunchCommand.h"
#include "layouts/Sessions.h"

namespace velto {

namespace {

constexpr const char* kResumeImportKey = "safariImportResumeAfterAccess";
constexpr const char* kUnitTestVariable = "XCTestConfigurationFilePath";
constexpr const char* kRepairTestVariable = "VELTO_REPAIR_TEST_DUPLICATES";
constexpr const char* kRepairWindowIdentifier = "safari-extension-repair-window";
constexpr double kCommandLineToolOfferDelay = 1.2;
constexpr double kResumeImportDelay = 0.6;
constexpr double kResumeImportWithin = 900;

bool isVisible(const Application& application, std::string_view identifier) {
  for (const Window* window : application.windows()) {
    if (window->isVisible() && window->identifier() == identifier) return true;
  }
  return false;
}

}  // namespace

AppDelegate::AppDelegate(const Platform& platform, const Services& services, WindowFurniture& furniture,
                         PageContent& content)
    : platform_(platform),
      services_(services),
      debugLog_(platform.files, platform.clock, platform.environment.documentsDirectory),
      windows_(platform.application),
      questions_(platform.application),
      windowLife_(windows_, questions_, services.sessions, platform.mainQueue),
      pinning_(windows_, services.sessions),
      pageZoom_(windows_, furniture),
      adBlocker_(platform.application, platform.defaults),
      navigation_(platform, windows_, questions_, windowLife_, content, services.history, services.sessions,
                  debugLog_),
      pageWindows_(windows_, windowLife_, debugLog_, platform.clock, platform.mainQueue),
      dialogs_(platform, windows_, questions_, windowLife_, pageWindows_, debugLog_),
      opener_(platform_, windows_, furniture, content, pageWindows_, services.sessions, services.toasts,
              {windowLife_, navigation_, dialogs_}),
      launchUrls_(platform_, opener_, services_, pendingLaunch_) {
  pageWindows_.setOpener(opener_);
}

void AppDelegate::applicationWillFinishLaunching() {
  const bool testMode = platform_.environment.isTestMode();
  services_.layouts.setOpener(opener_);
  services_.history.setOpener(opener_);
  pendingLaunch_.hasPendingExplicitLaunchTarget = argumentsHaveTarget();
  if (!testMode && platform_.defaults.boolean(kRestoreWindowsKey).value_or(true)) {
    pendingSessionRestore_ = services_.sessions.load();
  }
  services_.history.prepare(platform_.defaults);
  services_.signInHandoff.sweep(platform_.clock.now());
  services_.safariImport.removeLeftovers(argumentsAskForImport());
  if (!testMode && !platform_.environment.variable(kUnitTestVariable)) services_.signInSync.startIfEnabled();
  services_.layouts.prepareStore();
}

void AppDelegate::applicationDidFinishLaunching() {
  const bool testMode = platform_.environment.isTestMode();
  const bool quiet = testMode && !platform_.environment.variable(kRepairTestVariable);
  const WeakPtr<AppDelegate> self(*this);

  debugLog_.begin();
  services_.maintenance.buildMainMenu();
  queueArgumentTargets();
  if (!quiet) {
    platform_.mainQueue.async([self] {
      if (self) self->services_.maintenance.checkSafariExtension();
    });
  }
  services_.maintenance.applyStoredUpdateChoice(platform_.defaults);
  if (!testMode) {
    platform_.mainQueue.after(kCommandLineToolOfferDelay, [self] {
      if (self && !isVisible(self->platform_.application, kRepairWindowIdentifier)) {
        self->services_.maintenance.offerCommandLineTool();
      }
    });
  }
  if (pendingSessionRestore_ && !pendingLaunch_.hasPendingExplicitLaunchTarget && windows_.isEmpty()) {
    performLaunchRestoration();
  }
  pendingSessionRestore_.reset();
  if (!testMode) resumeSafariImport();
}

bool AppDelegate::argumentsHaveTarget() const {
  for (const std::string& argument : platform_.environment.arguments) {
    if (parseCommandLineTarget(argument)) return true;
  }
  return false;
}

bool AppDelegate::argumentsAskForImport() const {
  for (const std::string& argument : platform_.environment.arguments) {
    const auto target = parseCommandLineTarget(argument);
    const auto command = target ? parseLaunchUrl(target->url, {}) : std::nullopt;
    if (command && std::holds_alternative<ImportSafari>(*command)) return true;
  }
  return false;
}

void AppDelegate::queueArgumentTargets() {
  bool anyQueued = false;
  for (const std::string& argument : platform_.environment.arguments) {
    auto target = parseCommandLineTarget(argument);
    if (!target) continue;
    anyQueued = true;
    platform_.mainQueue.async([self = WeakPtr<AppDelegate>(*this), target = std::move(*target)] {
      if (self) self->launchUrls_.handleCommandLineTarget(target.scheme, target.url);
    });
  }
  pendingLaunch_.hasPendingExplicitLaunchTarget = anyQueued;
  if (!anyQueued) return;
  // An argument that turns out to name no page must not hold back restoration for ever: by the second turn
  // every request of the first has been carried out.
  platform_.mainQueue.async([self = WeakPtr<AppDelegate>(*this)] {
    if (!self) return;
    self->platform_.mainQueue.async([self] {
      if (self) self->pendingLaunch_.hasPendingExplicitLaunchTarget = false;
    });
  });
}

void AppDelegate::applicationOpenURLs(const std::vector<Url>& urls) { launchUrls_.handleLaunchURLs(urls); }

void AppDelegate::applicationOpenArguments(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) {
    const auto target = parseCommandLineTarget(argument);
    if (target) launchUrls_.handleCommandLineTarget(target->scheme, target->url);
  }
}

bool AppDelegate::applicationOpenUntitledFile() {
  if (!platform_.environment.isTestMode()) performLaunchRestoration();
  return true;
}

bool AppDelegate::applicationShouldHandleReopen(bool) { return applicationOpenUntitledFile(); }

void AppDelegate::applicationDidBecomeActive() {
  if (HovrelPanel* panel = windows_.keyPanel()) panel->focusPendingInitialAddress();
}

void AppDelegate::applicationWillTerminate() {
  services_.sessions.finishRecording();
  services_.history.finishRecording();
}

void AppDelegate::newWindow() {
  opener_.newWindow([this] { return services_.history.newestWebPage(); });
}

void AppDelegate::performLaunchRestoration() {
  namespace action = launch_restoration;
  LaunchCircumstances now;
  now.hasPendingExplicitLaunchTarget = pendingLaunch_.hasPendingExplicitLaunchTarget;
  now.hasOpenWindows = !windows_.isEmpty();
  if (pendingSessionRestore_) now.pendingSessionHasWindows = pendingSessionRestore_->hasWindows();
  now.newestWebPage = [this] { return services_.history.newestWebPage(); };

  const AppLaunchRestorationAction decided = decideLaunchRestoration(now);
  if (const auto* open = std::get_if<action::Open>(&decided)) {
    opener_.openWindow(open->url, {.focusAddress = open->focusAddress});
  } else if (std::holds_alternative<action::FocusExisting>(decided)) {
    focusExistingWindow();
  } else if (std::holds_alternative<action::RestoreSession>(decided)) {
    std::exchange(pendingSessionRestore_, nullptr)->restore();
  }
}

void AppDelegate::focusExistingWindow() {
  HovrelPanel* panel = windows_.keyPanel();
  if (panel == nullptr) panel = windows_.panels().back().get();
  panel->deminiaturize();
  panel->makeKeyAndOrderFront();
  platform_.application.activate();
}

void AppDelegate::resumeSafariImport() {
  const auto asked = platform_.defaults.date(kResumeImportKey);
  if (!asked) return;
  platform_.defaults.remove(kResumeImportKey);
  const double age = platform_.clock.now().secondsSince1970 - asked->secondsSince1970;
  if (age < 0 || age > kResumeImportWithin) return;
  platform_.mainQueue.after(kResumeImportDelay, [self = WeakPtr<AppDelegate>(*this)] {
    if (self) self->services_.safariImport.show(std::nullopt);
  });
}

}  // namespace velto
