#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/opening/LaunchUrlHandler.h"
#include "app/opening/Services.h"
#include "app/opening/WindowOpener.h"
#include "app/pages/AdBlocker.h"
#include "app/pages/DebugLog.h"
#include "app/pages/PageContent.h"
#include "app/pages/PageDialogs.h"
#include "app/pages/PageNavigation.h"
#include "app/pages/PageWindows.h"
#include "app/windows/OpenWindows.h"
#include "app/windows/PageQuestions.h"
#include "app/windows/PageZoom.h"
#include "app/windows/WindowFurniture.h"
#include "app/windows/WindowLife.h"
#include "app/windows/WindowPinning.h"
#include "platform/Platform.h"

namespace velto {

/// The one application-wide object: it decides what to show at start and at each request, and owns the open
/// windows and the classes that play the delegates' roles for them.
class AppDelegate : public ApplicationDelegate {
 public:
  AppDelegate(const Platform& platform, const Services& services, WindowFurniture& furniture,
              PageContent& content);

  void applicationWillFinishLaunching() override;
  void applicationDidFinishLaunching() override;
  void applicationOpenURLs(const std::vector<Url>& urls) override;
  void applicationOpenArguments(const std::vector<std::string>& arguments) override;
  bool applicationOpenUntitledFile() override;
  bool applicationShouldHandleReopen(bool hasVisibleWindows) override;
  void applicationDidBecomeActive() override;
  bool applicationShouldTerminateAfterLastWindowClosed() override { return false; }
  void applicationWillTerminate() override;

  /// @name Commands
  /// @{
  void closeWindow() { WindowLife::closeWindow(platform_.application); }
  void newWindow();
  void newPrivateWindow() { opener_.newPrivateWindow(); }
  void zoomIn() { pageZoom_.zoomIn(); }
  void zoomOut() { pageZoom_.zoomOut(); }
  void resetZoom() { pageZoom_.resetZoom(); }
  void toggleKeepOnTop() { pinning_.toggleKeepOnTop(); }
  void toggleAdBlocker() { adBlocker_.toggle(); }
  void unpinAllWindows() { pinning_.unpinAllWindows(); }
  /// @}

  [[nodiscard]] const OpenWindows& hovrelWindows() const { return windows_; }
  [[nodiscard]] WindowOpener& opener() { return opener_; }
  [[nodiscard]] DebugLog& debugLog() { return debugLog_; }
  [[nodiscard]] bool hasPendingExplicitLaunchTarget() const {
    return pendingLaunch_.hasPendingExplicitLaunchTarget;
  }

 private:
  [[nodiscard]] bool argumentsHaveTarget() const;
  [[nodiscard]] bool argumentsAskForImport() const;
  void queueArgumentTargets();
  void performLaunchRestoration();
  void focusExistingWindow();
  void resumeSafariImport();

  Platform platform_;
  Services services_;
  PendingLaunch pendingLaunch_;
  std::unique_ptr<RecordedSession> pendingSessionRestore_;
  DebugLog debugLog_;
  OpenWindows windows_;
  PageQuestions questions_;
  WindowLife windowLife_;
  WindowPinning pinning_;
  PageZoom pageZoom_;
  AdBlocker adBlocker_;
  PageNavigation navigation_;
  PageWindows pageWindows_;
  PageDialogs dialogs_;
  WindowOpener opener_;
  LaunchUrlHandler launchUrls_;
};

}  // namespace velto
