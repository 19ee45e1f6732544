#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/opening/Services.h"
#include "browsing/safari/SafariDataSource.h"

namespace velto {

/// Stands in for every subsystem that this build of the application comes without: it is called in the same
/// places and adds nothing.
class AbsentSubsystems : public SignInHandoff, public SignInSync, public Maintenance {
 public:
  explicit AbsentSubsystems(SafariDataSource safari) : safari_(std::move(safari)) {}

  [[nodiscard]] Services services(Sessions& sessions, Layouts& layouts, History& history,
                                  SafariImport& safariImport, Toasts& toasts) {
    return {.sessions = sessions,
            .layouts = layouts,
            .history = history,
            .signInHandoff = *this,
            .signInSync = *this,
            .safariImport = safariImport,
            .maintenance = *this,
            .toasts = toasts};
  }

  void sweep(WallTime) override {}
  std::optional<std::vector<HttpCookie>> redeem(const std::string&) override { return std::nullopt; }

  void startIfEnabled() override {}
  /// The copy that the command staged is for nobody, so it does not stay.
  void runCommand() override { safari_.removeSyncSnapshot(*safari_.syncSnapshotURL); }

  void buildMainMenu() override {}
  void checkSafariExtension() override {}
  void applyStoredUpdateChoice(UserDefaults&) override {}
  void offerCommandLineTool() override {}

 private:
  SafariDataSource safari_;
};

}  // namespace velto
