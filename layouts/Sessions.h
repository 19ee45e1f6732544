#pragma once

#include <memory>

#include "app/windows/SessionRecording.h"

namespace velto {

/// The preference whether the recorded windows are reopened at the next start; on unless it says otherwise.
constexpr const char* kRestoreWindowsKey = "restoreWindowsOnLaunch";

/// A recorded session that was read at start-up and may still be reopened.
class RecordedSession {
 public:
  virtual ~RecordedSession() = default;
  [[nodiscard]] virtual bool hasWindows() const = 0;
  virtual void restore() = 0;
};

/// The record of the open windows.
class Sessions : public SessionRecording {
 public:
  /// Null when there is none that can be read.
  virtual std::unique_ptr<RecordedSession> load() = 0;
  /// Records once more and never again.
  virtual void finishRecording() = 0;
};

}  // namespace velto
