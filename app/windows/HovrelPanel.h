#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "app/windows/DialogLimit.h"
#include "app/windows/LayoutScroll.h"
#include "app/windows/PopupLimit.h"
#include "controlbar/ControlBarView.h"
#include "platform/ui/Window.h"
#include "platform/web/WebView.h"

namespace velto {

/// How far the search for a server on this machine's loopback addresses has come.
struct LoopbackAttempt {
  /// The address that was asked for.
  Url original;
  std::size_t tried = 0;
  /// The load that tries the last candidate. Any other one that begins is not part of the search.
  std::optional<Navigation> navigation = {};
};

/// The floating window of one page: a borderless panel with a web view and what lies over it. The members are
/// the window's own state, written by the controllers of navigation, pinning and scrolling.
class HovrelPanel : public Panel {
 public:
  /// A second Escape within this many seconds opens the address field.
  static constexpr double kDoubleEscapeInterval = 0.3;

  using Panel::Panel;

  WeakPtr<ControlBarView> controlBarView;
  WeakPtr<WebView> webView;
  /// The load that began last.
  std::optional<Navigation> currentNavigation;
  std::optional<LoopbackAttempt> loopbackAttempt;
  /// What the page reported last.
  std::optional<LayoutScroll> lastKnownScroll;
  bool isPrivate = false;
  /// Kept above other windows.
  bool isPinned = false;
  /// The person unpinned it, so its page may not pin it again.
  bool unpinnedByPerson = false;
  /// Where to scroll once the page has loaded, and what was measured on the way.
  std::optional<LayoutScroll> pendingScrollRestore;
  std::optional<LayoutScroll> lastScrollRestoreObservation;
  /// The load that shows a failure page, which is no visit.
  std::optional<Navigation> failurePageNavigation;
  /// How often the process may die that shows a failure page.
  RollingLimit failurePageDeaths{2, 10};
  /// The load that shows the video player.
  std::optional<Navigation> playerNavigation;
  /// What its page may still ask for.
  DialogLimit dialogLimit;
  PopupLimit popupLimit;
  /// For the address field, once the window is active.
  std::optional<std::string> pendingInitialAddress;

  /// Escape once goes to the page; twice in a row opens the address field. It never closes the window.
  bool keyDown(const KeyEvent& event) override;
  bool performKeyEquivalent(const KeyEvent& event) override;
  void focusPendingInitialAddress();

 private:
  std::optional<Uptime> lastEscapeTime_;
};

}  // namespace velto
