#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "app/windows/Toasts.h"
#include "layouts/LayoutManager.h"
#include "layouts/SessionWriter.h"
#include "layouts/Sessions.h"
#include "layouts/VeltoSession.h"
#include "platform/Platform.h"

namespace velto {

/// Keeps the record of the open windows, and opens them again at the next start.
///
/// An arrangement is recorded 1.5 seconds after the last change, and at the end. The record is made on the
/// main thread and written in the background, but at the end before the application goes. In test mode
/// nothing is recorded.
///
/// A record without windows replaces one with windows only when the person wants that:
/// - The last ordinary window was closed: none is open, but one was in this run of the application. A run
///   that never had one, or only private ones, leaves the record alone.
/// - Or recording was just turned on for what is there now.
/// While no display is connected no window has a place, and only what changed before is recorded, on the
/// displays of then. Nothing at all is recorded while a session waits for a display to be reopened on.
/// Displays that come back find the windows wherever the window manager put them meanwhile, so it takes a
/// further change until they are recorded.
///
/// Main thread only.
class SessionRecorder : public Sessions, public Weakable {
 public:
  SessionRecorder(const Platform& platform, LayoutManager& manager, Toasts& toasts);

  void scheduleSessionRecording() override;
  void pageChanged() override;
  void recordSessionNow();
  std::unique_ptr<RecordedSession> load() override;
  void finishRecording() override;

  /// Opens its windows, each where it was or as near as the displays of now allow.
  void restoreSession(const VeltoSession& session);

  [[nodiscard]] bool restoresWindowsOnLaunch() const;
  /// Returns the new state.
  bool toggleRestoreWindowsOnLaunch();

 private:
  [[nodiscard]] bool isRecording() const;
  /// Nothing when what is open now must not replace the record.
  [[nodiscard]] std::optional<VeltoSession> currentSession(const std::vector<Screen>& screens) const;
  void record();
  void restoreWhenPossible();
  [[nodiscard]] bool anyOrdinaryWindow() const;

  Platform platform_;
  LayoutManager& manager_;
  Toasts& toasts_;
  SessionStore store_;
  SessionWriter writer_;
  WorkItem sessionRecordingWorkItem_;
  bool isSessionRecordingSuspended_ = false;
  /// A record without windows would be what the person wants.
  bool emptyIsReal_ = false;
  /// Those of the last change that is not recorded yet; none when every change is.
  std::vector<Screen> screensOfChange_;
  /// Waits for a display.
  std::optional<VeltoSession> waitingSession_;
};

}  // namespace velto
