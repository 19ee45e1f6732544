#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/opening/Services.h"

namespace velto {

/// Stands in for every subsystem that this build of the application comes without: it is called in the same
/// places and adds nothing.
class AbsentSubsystems : public Sessions,
                         public Layouts,
                         public History,
                         public SignInHandoff,
                         public SignInSync,
                         public SafariImport,
                         public Maintenance {
 public:
  [[nodiscard]] Services services(Toasts& toasts) {
    return {.sessions = *this,
            .layouts = *this,
            .history = *this,
            .signInHandoff = *this,
            .signInSync = *this,
            .safariImport = *this,
            .maintenance = *this,
            .toasts = toasts};
  }

  void scheduleSessionRecording() override {}
  std::unique_ptr<RecordedSession> load() override { return nullptr; }
  void finishRecording() override {}

  void setOpener(LayoutWindowOpening&) override {}
  void prepareStore() override {}
  void handleCommand(const Url&) override {}

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
