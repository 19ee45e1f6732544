#pragma once

#include "app/windows/OpenWindows.h"
#include "app/windows/SessionRecording.h"

namespace velto {

/// Keeps windows above others, and tells their pages.
class WindowPinning {
 public:
  WindowPinning(OpenWindows& windows, SessionRecording& session) : windows_(windows), session_(session) {}

  /// The page learns of a change through a `veltowindow` event on its `window`.
  static void setPinned(HovrelPanel& panel, bool pinned);
  /// The person's own command, for the key window: unpinning by hand also stops the page from pinning it
  /// again.
  void toggleKeepOnTop();
  void unpinAllWindows();

 private:
  OpenWindows& windows_;
  SessionRecording& session_;
};

}  // namespace velto
