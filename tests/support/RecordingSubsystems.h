#pragma once

#include <functional>
#include <iomanip>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/launch/PlayerUrl.h"
#include "app/opening/Services.h"
#include "app/opening/WindowOpener.h"
#include "app/pages/PageContent.h"
#include "app/pages/PlayerPage.h"
#include "app/windows/WindowFurniture.h"
#include "platform/headless/HeadlessWebView.h"

namespace velto::test {

/// What was asked of the collaborators, in order.
using CallLog = std::vector<std::string>;

inline std::string textOf(double number) {
  std::ostringstream text;
  text << std::setprecision(6) << number;
  return text.str();
}

inline std::string textOf(const std::optional<std::string>& text) {
  return text ? "\"" + *text + "\"" : "nothing";
}

/// A control bar that writes down what it was told and takes the keyboard when the test lets it.
class FakeControlBarView : public ControlBarView {
 public:
  FakeControlBarView(CallLog& log, bool takesAddresses) : takesAddress(takesAddresses), log_(log) {}

  bool takesAddress;
  bool takesKeyEquivalents = false;
  bool collapsed = false;
  std::optional<std::string> address;

  void setPageZoom(double zoom) override { log_.push_back("bar: zoom " + textOf(zoom)); }
  void loadStarted() override { log_.push_back("bar: load started"); }
  void setPageAddress(const Url& url) override { log_.push_back("bar: page " + url.absoluteString()); }
  void setPrivate(bool isPrivate) override {
    log_.push_back(isPrivate ? "bar: private" : "bar: not private");
  }
  void setControlsCollapsed(bool value) override {
    collapsed = value;
    log_.push_back(collapsed ? "bar: collapsed" : "bar: not collapsed");
  }
  [[nodiscard]] bool controlsCollapsed() const override { return collapsed; }
  void expandControls() override { log_.push_back("bar: expand"); }
  bool openAddressField(const std::optional<std::string>& text) override {
    log_.push_back("bar: address " + textOf(text));
    address = text;
    return takesAddress;
  }
  bool takeKeyEquivalent(const KeyEvent&) override { return takesKeyEquivalents; }
  void forceExpandedPresentation() override { log_.push_back("bar: force expanded"); }

 private:
  CallLog& log_;
};

/// Every collaborator of the launch spine, each call written into one log. The fields say how they answer.
class RecordingSubsystems {
 public:
  CallLog log;
  /// Whether the recorded session has windows; absent when there is no session.
  std::optional<bool> sessionHasWindows;
  /// What reopening the session opens.
  std::vector<std::string> sessionPages;
  /// What the history tells; nothing by default.
  std::function<std::optional<Url>()> newestWebPage;
  /// What each ticket is good for.
  std::map<std::string, std::vector<HttpCookie>> tickets;
  bool makesControlBars = true;
  bool barsTakeAddresses = true;
  /// Called by each call of a furniture maker, to look at the state at that moment.
  std::function<void(const std::string& entry)> onCall;

  [[nodiscard]] Services services() {
    return {sessions_, layouts_, history_, signInHandoff_, signInSync_, safariImport_, maintenance_, toasts_};
  }
  [[nodiscard]] WindowFurniture& furniture() { return furniture_; }
  [[nodiscard]] PageContent& content() { return content_; }
  [[nodiscard]] LayoutWindowOpening* opener() const { return layouts_.opener.get(); }

  void note(std::string entry) {
    log.push_back(std::move(entry));
    if (onCall) onCall(std::string(log.back()));
  }
  /// What was called since the last time.
  [[nodiscard]] CallLog takeLog() { return std::exchange(log, {}); }
  [[nodiscard]] int countOf(std::string_view entry) const {
    int count = 0;
    for (const std::string& line : log) count += line == entry ? 1 : 0;
    return count;
  }

 private:
  using Self = RecordingSubsystems&;

  struct FakeSession : RecordedSession {
    explicit FakeSession(Self self) : all(self) {}
    [[nodiscard]] bool hasWindows() const override { return *all.sessionHasWindows; }
    void restore() override {
      all.note("session: restore");
      for (const std::string& page : all.sessionPages) all.opener()->openWindow(Url::parse(page).value(), {});
    }
    Self all;
  };
  struct FakeSessions : Sessions {
    explicit FakeSessions(Self self) : all(self) {}
    void scheduleSessionRecording() override { all.note("sessions: schedule"); }
    void pageChanged() override {}
    std::unique_ptr<RecordedSession> load() override {
      all.note("sessions: load");
      return all.sessionHasWindows ? std::make_unique<FakeSession>(all) : nullptr;
    }
    void finishRecording() override { all.note("sessions: finish"); }
    Self all;
  };
  struct FakeLayouts : Layouts {
    explicit FakeLayouts(Self self) : all(self) {}
    void setOpener(LayoutWindowOpening& given) override {
      opener = given;
      all.note("layouts: opener");
    }
    void prepareStore() override { all.note("layouts: prepare"); }
    void handleCommand(const Url& url) override { all.note("layouts: " + url.absoluteString()); }
    Self all;
    WeakPtr<LayoutWindowOpening> opener;
  };
  struct FakeHistory : History {
    explicit FakeHistory(Self self) : all(self) {}
    void setOpener(LayoutWindowOpening&) override {}
    void prepare(UserDefaults&) override { all.note("history: prepare"); }
    void recordVisit(const Url& url, const std::string& title) override {
      all.note("history: visit " + url.absoluteString() + " " + title);
    }
    void show(const std::optional<std::string>& domain) override {
      all.note("history: show " + textOf(domain));
    }
    [[nodiscard]] std::optional<Url> newestWebPage() const override {
      return all.newestWebPage ? all.newestWebPage() : std::nullopt;
    }
    void finishRecording() override { all.note("history: finish"); }
    Self all;
  };
  struct FakeSignInHandoff : SignInHandoff {
    explicit FakeSignInHandoff(Self self) : all(self) {}
    void sweep(WallTime now) override { all.note("handoff: sweep " + formatIso8601(now)); }
    std::optional<std::vector<HttpCookie>> redeem(const std::string& ticket) override {
      all.note("handoff: redeem " + ticket);
      const auto found = all.tickets.find(ticket);
      return found == all.tickets.end() ? std::nullopt : std::optional(found->second);
    }
    Self all;
  };
  struct FakeSignInSync : SignInSync {
    explicit FakeSignInSync(Self self) : all(self) {}
    void startIfEnabled() override { all.note("sync: start"); }
    void runCommand() override { all.note("sync: command"); }
    Self all;
  };
  struct FakeSafariImport : SafariImport {
    explicit FakeSafariImport(Self self) : all(self) {}
    void removeLeftovers(bool importFollows) override {
      all.note(importFollows ? "import: leftovers but the staged copy" : "import: leftovers");
    }
    void show(const std::optional<std::string>& sites) override { all.note("import: show " + textOf(sites)); }
    Self all;
  };
  struct FakeMaintenance : Maintenance {
    explicit FakeMaintenance(Self self) : all(self) {}
    void buildMainMenu() override { all.note("menu: build"); }
    void checkSafariExtension() override { all.note("extension: check"); }
    void applyStoredUpdateChoice(UserDefaults&) override { all.note("updates: apply"); }
    void offerCommandLineTool() override { all.note("tool: offer"); }
    Self all;
  };
  struct FakeToasts : Toasts {
    explicit FakeToasts(Self self) : all(self) {}
    using Toasts::show;
    void show(const std::string& text, const Window*) override { all.note("toast: " + text); }
    Self all;
  };
  struct FakeFurniture : WindowFurniture {
    explicit FakeFurniture(Self self) : all(self) {}
    void addChrome(HovrelPanel&, View& container) override {
      container.addSubview(std::make_unique<View>(container.bounds())).setIdentifier("chrome");
      all.note("furniture: chrome");
    }
    ControlBarView* addControlBar(HovrelPanel&, View& container, UserDefaults& preferences) override {
      preferences.set("bar", true);
      all.note("furniture: bar");
      if (!all.makesControlBars) return nullptr;
      return &container.addSubview(std::make_unique<FakeControlBarView>(all.log, all.barsTakeAddresses));
    }
    void addZoomIndicator(View& container) override {
      container.addSubview(std::make_unique<View>()).setIdentifier("zoom-indicator");
      all.note("furniture: zoom indicator");
    }
    void showZoom(View& container, double zoom) override {
      const View* indicator = container.subviews().empty() ? nullptr : container.subviews().back().get();
      const bool shown = indicator != nullptr && indicator->identifier() == "zoom-indicator";
      all.note((shown ? "furniture: show zoom " : "furniture: no indicator for zoom ") + textOf(zoom));
    }
    Self all;
  };
  struct FakeContent : PageContent {
    explicit FakeContent(Self self) : all(self) {}
    std::shared_ptr<UserContentController> makeUserContentController(PageWindows&) override {
      auto controller = std::make_shared<UserContentController>();
      for (const char* name : {"velto", "windowDrag", "windowResize", "veltoScroll", "veltoWindow"}) {
        controller->addMessageHandler(name, [this, name](WebView&, const ScriptMessage&) {
          all.note(std::string("message: ") + name);
        });
      }
      return controller;
    }
    std::map<std::string, std::shared_ptr<UrlSchemeHandler>> makeUrlSchemeHandlers() override {
      return {{"velto-history", std::make_shared<Handler>()}};
    }
    std::optional<Navigation> loadPlayer(WebView& webView, const Url& url) override {
      all.note("player: " + url.absoluteString());
      const auto base = playerWebURL(url, kWebHost);
      return base ? webView.loadHtml("<title>Velto Video</title>", base) : webView.load({url});
    }
    [[nodiscard]] std::optional<Url> playerAt(const Url& url) const override {
      const bool isPlayer = url.host() == kWebHost && url.encodedPath() == "/player";
      return isPlayer ? playerLaunchURL(url.queryValue("v").value_or(""), false, std::nullopt) : std::nullopt;
    }
    static constexpr const char* kWebHost = "player.example";

    struct Handler : UrlSchemeHandler {
      void startTask(WebView&, std::unique_ptr<UrlSchemeTask> task) override {
        task->respond(200, {}, "history");
      }
    };
    Self all;
  };

  FakeSessions sessions_{*this};
  FakeLayouts layouts_{*this};
  FakeHistory history_{*this};
  FakeSignInHandoff signInHandoff_{*this};
  FakeSignInSync signInSync_{*this};
  FakeSafariImport safariImport_{*this};
  FakeMaintenance maintenance_{*this};
  FakeToasts toasts_{*this};
  FakeFurniture furniture_{*this};
  FakeContent content_{*this};
};

}  // namespace velto::test
