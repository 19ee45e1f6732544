#include "layouts/SessionRecorder.h"

#include <algorithm>
#include <utility>

#include "layouts/LayoutNames.h"
#include "layouts/OpenWindowCapture.h"

namespace velto {
namespace {

constexpr double kRecordingDelay = 1.5;
constexpr double kDisplayPollInterval = 1;

class LoadedSession : public RecordedSession {
 public:
  LoadedSession(SessionRecorder& recorder, VeltoSession session)
      : recorder_(recorder), session_(std::move(session)) {}
  [[nodiscard]] bool hasWindows() const override { return !session_.windows.empty(); }
  void restore() override {
    if (recorder_) recorder_->restoreSession(session_);
  }

 private:
  WeakPtr<SessionRecorder> recorder_;
  VeltoSession session_;
};

Layout layoutOf(const VeltoSession& session) {
  Layout layout;
  layout.name = "Last session";
  layout.createdAt = session.savedAt;
  layout.updatedAt = session.savedAt;
  layout.displays = session.displays;
  layout.windows = session.windows;
  return layout;
}

}  // namespace

SessionRecorder::SessionRecorder(const Platform& platform, LayoutManager& manager, Toasts& toasts)
    : platform_(platform),
      manager_(manager),
      toasts_(toasts),
      store_(platform.files, platform.environment.applicationSupportDirectory),
      writer_(store_, platform.backgroundQueue) {}

bool SessionRecorder::isRecording() const {
  return !isSessionRecordingSuspended_ && !platform_.environment.isTestMode();
}

void SessionRecorder::scheduleSessionRecording() {
  if (!isRecording()) return;
  emptyIsReal_ = emptyIsReal_ || anyOrdinaryWindow();
  if (auto screens = platform_.application.screens(); !screens.empty()) screensOfChange_ = std::move(screens);
  sessionRecordingWorkItem_.cancel();
  sessionRecordingWorkItem_ =
      platform_.mainQueue.after(kRecordingDelay, [self = WeakPtr<SessionRecorder>(*this)] {
        if (self) self->recordSessionNow();
      });
}

void SessionRecorder::pageChanged() {
  // A page that loads itself anew for ever must not keep anything from being recorded.
  if (!sessionRecordingWorkItem_.isPending()) scheduleSessionRecording();
}

void SessionRecorder::recordSessionNow() {
  if (!isRecording()) return;
  sessionRecordingWorkItem_.cancel();
  record();
}

void SessionRecorder::finishRecording() {
  if (!isRecording()) return;
  record();
  isSessionRecordingSuspended_ = true;
  sessionRecordingWorkItem_.cancel();
  writer_.finish();
}

bool SessionRecorder::anyOrdinaryWindow() const {
  const auto panels = openPanels(platform_.application);
  return std::any_of(panels.begin(), panels.end(), [](const auto* panel) { return !panel->isPrivate; });
}

std::optional<VeltoSession> SessionRecorder::currentSession(const std::vector<Screen>& screens) const {
  if (screens.empty() || waitingSession_) return std::nullopt;
  const auto displays = displaysOf(screens);
  VeltoSession session;
  session.savedAt = platform_.clock.now();
  session.layoutID = manager_.currentLayoutID();
  for (const auto& display : displays) session.displays.push_back(layoutDisplay(display));
  for (const auto& window : snapshotsOn(screens, platform_.application, displays)) {
    session.windows.push_back(layoutWindow(window, session.savedAt));
  }
  const bool mayReplace = !session.windows.empty() || (emptyIsReal_ && !anyOrdinaryWindow());
  return mayReplace ? std::optional(std::move(session)) : std::nullopt;
}

void SessionRecorder::record() {
  auto screens = platform_.application.screens();
  const auto screensOfChange = std::exchange(screensOfChange_, {});
  const auto session = currentSession(screens.empty() ? screensOfChange : screens);
  try {
    if (session) writer_.write(encodeJson(*session));
  } catch (const JsonError&) {
    // A number that no file can hold; the record before this one stays.
  }
}

std::unique_ptr<RecordedSession> SessionRecorder::load() {
  auto session = store_.load();
  if (!session) return nullptr;
  return std::make_unique<LoadedSession>(*this, std::move(*session));
}

void SessionRecorder::restoreSession(const VeltoSession& session) {
  if (session.windows.empty()) return;
  const auto displays = currentDisplays(platform_.application);
  if (displays.empty()) {
    waitingSession_ = session;
    platform_.mainQueue.after(kDisplayPollInterval, [self = WeakPtr<SessionRecorder>(*this)] {
      if (self) self->restoreWhenPossible();
    });
    return;
  }
  const auto plan = LayoutRestorePlan::plan(layoutOf(session), displays);
  manager_.openEntries(plan.entries);
  if (session.layoutID && manager_.store().layoutWithId(*session.layoutID)) {
    manager_.setCurrentLayoutID(*session.layoutID);
  }
  if (!plan.isApproximated()) return;
  toasts_.show("Reopened " + countedWindows(plan.entries.size()) + ", fitted to this screen");
}

void SessionRecorder::restoreWhenPossible() {
  if (!waitingSession_) return;  // asked for twice, and reopened by now
  const VeltoSession session = *std::exchange(waitingSession_, std::nullopt);
  // What was asked for meanwhile counts more.
  if (openPanels(platform_.application).empty()) restoreSession(session);
}

bool SessionRecorder::restoresWindowsOnLaunch() const {
  return platform_.defaults.boolean(kRestoreWindowsKey).value_or(true);
}

bool SessionRecorder::toggleRestoreWindowsOnLaunch() {
  const bool restores = !restoresWindowsOnLaunch();
  platform_.defaults.set(kRestoreWindowsKey, restores);
  if (restores) {
    emptyIsReal_ = true;
    recordSessionNow();
  }
  return restores;
}

}  // namespace velto
