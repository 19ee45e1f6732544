#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/opening/Services.h"

namespace velto {

/// Stands in for every subsystem that this build of the application comes without: it is called in the same
/// places and adds nothing.
class AbsentSubsystems : public SignInHandoff, public SignInSync, public Maintenance {
 public:
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
  void runCommand() override {}

  void buildMainMenu() override {}
  void checkSafariExtension() override {}
  void applyStoredUpdateChoice(UserDefaults&) override {}
  void offerCommandLineTool() override {}
};

}  // namespace velto
