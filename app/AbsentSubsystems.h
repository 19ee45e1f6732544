#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/opening/Services.h"

namespace velto {

/// Stands in for every subsystem that this build of the application comes without: it is called in the same
/// places and adds nothing.
class AbsentSubsystems : public History,
                         public SignInHandoff,
                         public SignInSync,
                         public SafariImport,
                         public Maintenance {
 public:
  [[nodiscard]] Services services(Sessions& sessions, Layouts& layouts, Toasts& toasts) {
    return {.sessions = sessions,
            .layouts = layouts,
            .history = *this,
            .signInHandoff = *this,
            .signInSync = *this,
            .safariImport = *this,
            .maintenance = *this,
            .toasts = toasts};
  }

  void prepare(UserDefaults&) override {}
  void recordVisit(const Url&, const std::string&) override {}
  void show(const std::optional<std::string>&) override {}

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
