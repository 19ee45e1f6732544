#pragma once

#include <map>
#include <set>
#include <utility>

#include "app/windows/OpenWindows.h"
#include "app/windows/PageQuestions.h"
#include "app/windows/SessionRecording.h"
#include "platform/loop/MainQueue.h"

namespace velto {

/// Delegate of every panel: lets a page object to its window being closed, and takes closed windows apart.
///
/// Closing first loads "about:blank", so that the page's `beforeunload` handler runs as in any navigation.
/// When that load finishes the window closes; when it fails the person chose to stay. A page that does not
/// answer has no say.
class WindowLife : public WindowDelegate {
 public:
  WindowLife(OpenWindows& windows, PageQuestions& questions, SessionRecording& session, MainQueue& mainQueue);

  /// The window of this page is to close and waits for the page.
  [[nodiscard]] bool isClosing(const WebView& webView) const { return pendingCloseNav_.contains(&webView); }

  /// Closes the key window, whichever it is.
  static void closeWindow(const Application& application);

  void windowDidBecomeKey(Window&) override {}
  bool windowShouldClose(Window& window) override;
  void windowWillClose(Window& window) override;
  void windowDidMove(Window&) override { session_.scheduleSessionRecording(); }
  void windowDidResize(Window&) override { session_.scheduleSessionRecording(); }

  /// @name Reported by the navigation delegate
  /// @{
  /// True when this navigation was a pending close; the window is closed then.
  bool finishPendingClose(WebView& webView, Navigation navigation);
  /// True when this navigation was a pending close; the window stays.
  bool abandonPendingClose(WebView& webView, Navigation navigation);
  /// The page's process died or hangs: a pending close need not wait for it. True when there was one.
  bool pageStoppedAnswering(WebView& webView);
  /// @}

  /// The page wants to show a dialog. True when its window is closing: the person has no more to say to it. A
  /// page that goes on wanting does not answer.
  bool refusesDialog(WebView& webView);

 private:
  struct PendingClose {
    WeakPtr<Window> window;
    Navigation navigation;
    int refusedDialogs = 0;
  };
  void confirmClose(const WeakPtr<Window>& window);

  OpenWindows& windows_;
  PageQuestions& questions_;
  SessionRecording& session_;
  MainQueue& mainQueue_;
  std::set<const Window*> confirmedCloseWindows_;
  std::map<const WebView*, PendingClose> pendingCloseNav_;
};

}  // namespace velto
