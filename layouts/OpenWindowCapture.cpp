#include "layouts/OpenWindowCapture.h"

#include <algorithm>
#include <utility>

#include "platform/foundation/Uuid.h"

namespace velto {
namespace {

using Displays = std::vector<LayoutDisplaySnapshot>;

LayoutDisplaySnapshot displayOf(const Screen& screen, bool isMain) {
  return {.key = displayKey(screen),
          .name = screen.name,
          .frame = screen.frame,
          .visibleFrame = screen.visibleFrame,
          .backingScaleFactor = screen.backingScaleFactor,
          .isMain = isMain};
}

/// The one that shows most of the frame, else the main one. As `Window::screen`, without asking for the
/// screens again for each window.
const Screen* screenShowing(const Rect& frame, const std::vector<Screen>& screens) {
  const auto shown = [&](const Screen& screen) {
    const Size size = screen.frame.intersection(frame).size;
    return size.width * size.height;
  };
  const auto most = std::max_element(screens.begin(), screens.end(),
                                     [&](const Screen& a, const Screen& b) { return shown(a) < shown(b); });
  return most == screens.end() ? nullptr : &*most;
}

std::optional<LayoutDisplaySnapshot> displayOf(const Window& window, const Displays& displays,
                                               const std::vector<Screen>& screens) {
  const Screen* screen = screenShowing(window.frame(), screens);
  const auto key = screen == nullptr ? std::nullopt : std::optional(displayKey(*screen));
  if (const LayoutDisplaySnapshot* known = displayWithKey(displays, key)) return *known;
  if (screens.empty()) return std::nullopt;
  return displayOf(screens.front(), true);
}

std::string titleOf(const HovrelPanel& panel, const Url& url) {
  if (!panel.title().empty()) return panel.title();
  if (std::string title = panel.webView->title(); !title.empty()) return title;
  const auto host = url.host();
  return host && !host->empty() ? *host : url.absoluteString();
}

/// A page that is still on its way will be scrolled there.
std::optional<LayoutScroll> scrollOf(const HovrelPanel& panel) {
  return panel.pendingScrollRestore ? panel.pendingScrollRestore : panel.lastKnownScroll;
}

std::optional<WindowSnapshot> snapshotOn(const std::vector<Screen>& screens, const Window& window,
                                         const Displays& displays) {
  const auto* panel = dynamic_cast<const HovrelPanel*>(&window);
  if (panel == nullptr || panel->isPrivate || !panel->webView) return std::nullopt;
  const auto url = panel->webView->url();
  auto display = displayOf(window, displays, screens);
  if (!url || !display) return std::nullopt;
  return WindowSnapshot{.id = makeUuid(),
                        .url = url->absoluteString(),
                        .title = titleOf(*panel, *url),
                        .frame = panel->frame(),
                        .display = std::move(*display),
                        .zoom = panel->webView->pageZoom(),
                        .chromeless = panel->controlBarView && panel->controlBarView->controlsCollapsed(),
                        .pinned = panel->isPinned,
                        .scroll = scrollOf(*panel),
                        .noFocus = panel->isNonactivating()};
}

}  // namespace

std::string displayKey(const Screen& screen) {
  return displayKey({screen.vendor, screen.model, screen.serial}, screen.name, screen.frame.size);
}

Displays currentDisplays(const Application& application) { return displaysOf(application.screens()); }

Displays displaysOf(const std::vector<Screen>& screens) {
  Displays displays;
  for (const Screen& screen : screens) displays.push_back(displayOf(screen, displays.empty()));
  return numberedDisplays(std::move(displays));
}

std::vector<HovrelPanel*> openPanels(const Application& application) {
  std::vector<HovrelPanel*> panels;
  for (Window* window : application.windows()) {
    auto* panel = dynamic_cast<HovrelPanel*>(window);
    if (panel != nullptr && !panel->isClosed()) panels.push_back(panel);
  }
  return panels;
}

std::optional<WindowSnapshot> snapshot(const Window& window, const Displays& displays) {
  return snapshotOn(window.application().screens(), window, displays);
}

std::vector<WindowSnapshot> snapshots(const Application& application, const Displays& displays) {
  return snapshotsOn(application.screens(), application, displays);
}

std::vector<WindowSnapshot> snapshotsOn(const std::vector<Screen>& screens, const Application& application,
                                        const Displays& displays) {
  std::vector<WindowSnapshot> taken;
  for (const HovrelPanel* panel : openPanels(application)) {
    if (auto one = snapshotOn(screens, *panel, displays)) taken.push_back(std::move(*one));
  }
  return taken;
}

}  // namespace velto
