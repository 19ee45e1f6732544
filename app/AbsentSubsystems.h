#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/opening/Services.h"
#include "app/pages/PageContent.h"
#include "app/windows/WindowFurniture.h"

namespace velto {

/// Stands in for every subsystem that this build of the application comes without: it is called in the same
/// places and adds nothing.
class AbsentSubsystems : public Sessions,
                         public Layouts,
                         public History,
                         public SignInHandoff,
                         public SignInSync,
                         public SafariImport,
                         public Maintenance,
                         public Toasts,
                         public WindowFurniture,
                         public PageContent {
 public:
  [[nodiscard]] Services services() {
    return {.sessions = *this,
            .layouts = *this,
            .history = *this,
            .signInHandoff = *this,
            .signInSync = *this,
            .safariImport = *this,
            .maintenance = *this,
            .toasts = *this};
  }

  void scheduleSessionRecording() override {}
  std::unique_ptr<RecordedSession> load() override { return nullptr; }
  void finishRecording() override {}

  void setOpener(LayoutWindowOpening&) override {}
  void prepareStore() override {}
  void handleCommand(const Url&) override {}

  void prepare(UserDefaults&) override {}
  void show(const std::optional<std::string>&) override {}
  void show(const std::string&) override {}

  void sweep(WallTime) override {}
  std::optional<std::vector<HttpCookie>> redeem(const std::string&) override { return std::nullopt; }

  void startIfEnabled() override {}
  void runCommand() override {}

  void buildMainMenu() override {}
  void checkSafariExtension() override {}
  void applyStoredUpdateChoice(UserDefaults&) override {}
  void offerCommandLineTool() override {}

  void addChrome(HovrelPanel&, View&) override {}
  ControlBarView* addControlBar(HovrelPanel&, View&, UserDefaults&) override { return nullptr; }
  void addZoomIndicator(View&) override {}
  void showZoom(View&, double) override {}

  std::shared_ptr<UserContentController> makeUserContentController() override {
    return std::make_shared<UserContentController>();
  }
  std::map<std::string, std::shared_ptr<UrlSchemeHandler>> makeUrlSchemeHandlers() override { return {}; }
  /// The engine says in the window that it cannot open such an address.
  void loadPlayer(WebView& webView, const Url& url) override { webView.load({url}); }
};

}  // namespace velto
