#pragma once

#include "app/windows/SessionRecording.h"
#include "platform/web/WebView.h"

namespace velto {

/// Lets a page pin the window that it is shown in, and read whether it is pinned. A page can unpin any window
/// of its own, but not pin one that the person has unpinned.
class VeltoWindowPinBridge {
 public:
  explicit VeltoWindowPinBridge(SessionRecording& session) : session_(session) {}

  /// Carries the message out; the reply tells the state that the window is in then.
  [[nodiscard]] ScriptReply reply(const WebView& webView, const ScriptMessage& message) const;

 private:
  SessionRecording& session_;
};

}  // namespace velto
