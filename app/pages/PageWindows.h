#pragma once

#include <cstddef>
#include <string>

#include "app/pages/DebugLog.h"
#include "app/windows/OpenWindows.h"
#include "app/windows/RollingLimit.h"
#include "app/windows/WindowLife.h"
#include "app/windows/WindowOpening.h"
#include "platform/loop/Clock.h"
#include "platform/loop/MainQueue.h"
#include "platform/web/WebView.h"

namespace velto {

/// Opens the windows that pages ask for: each a full window of its own, without a link to the page that asked
/// for it. What is refused is counted in the debug log and not told to the page.
class PageWindows : public Weakable {
 public:
  /// Windows that all pages together open within `kSeconds`, clicks or not.
  static constexpr std::size_t kMost = 20;
  static constexpr double kSeconds = 10;
  /// A message counts as the person's own doing for so many seconds after they touched the page.
  static constexpr double kGestureLasts = 1;

  PageWindows(OpenWindows& windows, const WindowLife& windowLife, DebugLog& log, const Clock& clock,
              MainQueue& mainQueue);

  /// Before the first page asks.
  void setOpener(LayoutWindowOpening& opener) { opener_ = opener; }
  /// The window opens in a later turn, in the data store of the one that asks.
  void open(const WebView& webView, const PageWindowRequest& request);
  /// For a message that names an address that a page may open, or a video: a window with all defaults but
  /// one. A private page opens private windows, whichever way it asks: an ordinary one would show the person
  /// signed in to the site that they visit in private, and keep the visit.
  void openByMessage(const WebView& webView, const Url& url);

 private:
  void ask(const WebView& webView, const Url& url, WindowOptions options, bool isUserGesture);
  [[nodiscard]] PopupLimit::Verdict admit(const WebView& webView, bool isUserGesture);
  void openNow(const Url& url, const WindowOptions& options, PopupLimit::Verdict verdict);
  void refused(const WebView& webView);
  void reportRefused();

  OpenWindows& windows_;
  const WindowLife& windowLife_;
  DebugLog& log_;
  const Clock& clock_;
  MainQueue& mainQueue_;
  WeakPtr<LayoutWindowOpening> opener_;
  RollingLimit limit_{kMost, kSeconds};
  std::size_t refused_ = 0;
  std::string lastRefused_;
  WorkItem nextReport_;
};

/// Whether pages may open a window on the target: web pages and the empty page. No script, no text in place
/// of an address, and nothing that the desktop or the application itself takes for a command. No file either,
/// not even for a page that is one: it may show a frame from elsewhere, which asks in its name.
bool mayPageOpen(const Url& target);

}  // namespace velto
