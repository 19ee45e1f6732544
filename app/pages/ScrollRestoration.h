#pragma once

#include <cstddef>
#include <optional>

#include "app/windows/OpenWindows.h"
#include "platform/loop/MainQueue.h"
#include "platform/web/WebView.h"

namespace velto {

/// Scrolls a page that has loaded to where its window is to show it. A page that is still laying itself out
/// gets several chances; a person who scrolls meanwhile wins.
class ScrollRestoration : public Weakable {
 public:
  ScrollRestoration(const OpenWindows& windows, MainQueue& queue) : windows_(windows), queue_(queue) {}

  /// Does nothing unless a scroll position waits for the page.
  void pageLoaded(WebView& webView);

 private:
  struct Pass {
    WeakPtr<WebView> page;
    LayoutScroll target;
    /// The load whose page is scrolled.
    std::optional<Navigation> navigation;
    std::size_t number = 0;
  };

  /// The window of the page, or null when something else came to be shown there.
  [[nodiscard]] HovrelPanel* panelOf(const Pass& pass) const;
  void run(const Pass& pass);
  void measured(Pass pass, const std::optional<JsonValue>& reply);

  const OpenWindows& windows_;
  MainQueue& queue_;
};

}  // namespace velto
