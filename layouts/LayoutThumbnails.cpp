#include "layouts/LayoutThumbnails.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <utility>

#include "layouts/OpenWindowCapture.h"
#include "platform/loop/DispatchGroup.h"

namespace velto {
namespace {

constexpr double kLongSide = 480;
/// A page that hangs costs the others no more than this, in seconds.
constexpr double kPatience = 5;
constexpr const char* kEnabledKey = "layoutThumbnailsEnabled";

/// Of several windows with one page the newest shows it.
std::map<std::string, WebView*> openPages(const Application& application) {
  std::map<std::string, WebView*> pages;
  for (const HovrelPanel* panel : openPanels(application)) {
    if (panel->isPrivate || panel->contentView() == nullptr) continue;
    auto* webView = firstSubview<WebView>(*panel->contentView());
    const auto url = webView != nullptr ? webView->url() : std::nullopt;
    if (url) pages[url->absoluteString()] = webView;
  }
  return pages;
}

double pictureWidth(Size shown) {
  const double longSide = std::max(shown.width, shown.height);
  if (!(shown.width > 0 && shown.height > 0) || longSide <= kLongSide) return kLongSide;
  return std::round(shown.width * kLongSide / longSide);
}

bool areWanted(const UserDefaults& defaults) { return defaults.boolean(kEnabledKey).value_or(true); }

/// The pictures of one layout, until all are there or it takes too long.
struct Capture {
  WeakPtr<LayoutStore> store;
  const UserDefaults& defaults;
  std::string layoutId;
  Task completion;
  LayoutStore::ThumbnailPaths paths;
  bool isOver = false;

  [[nodiscard]] bool mayWrite() const {
    return !isOver && store && areWanted(defaults) && store->hasFileOf(layoutId);
  }

  void add(const std::string& windowId, const std::optional<std::string>& png) {
    if (!png || !mayWrite()) return;
    try {
      paths[windowId] = store->writeThumbnail(*png, layoutId, windowId);
    } catch (const std::exception&) {
      // It stays without a new picture.
    }
  }

  void end() {
    if (isOver) return;
    try {
      if (!paths.empty() && mayWrite()) store->setThumbnails(layoutId, paths);
    } catch (const std::exception&) {
      // The layout stays without the pictures.
    }
    isOver = true;
    if (completion) completion();
  }
};

}  // namespace

void captureThumbnails(const Layout& layout, const Application& application, LayoutStore& store,
                       const UserDefaults& defaults, MainQueue& mainQueue, Task completion) {
  if (!areWanted(defaults)) {
    if (completion) completion();
    return;
  }
  const auto pages = openPages(application);
  const std::shared_ptr<Capture> capture(
      new Capture{WeakPtr<LayoutStore>(store), defaults, layout.id, std::move(completion), {}});
  DispatchGroup group(mainQueue);
  for (const LayoutWindow& window : layout.windows) {
    const auto page = pages.find(window.url);
    if (page == pages.end()) continue;
    group.enter();
    const auto taken = [capture, windowId = window.id,
                        pending = group](const std::optional<std::string>& png) mutable {
      capture->add(windowId, png);
      pending.leave();
    };
    page->second->takeSnapshot(pictureWidth(page->second->bounds().size), taken);
  }
  WorkItem deadline = mainQueue.after(kPatience, [capture] { capture->end(); });
  group.notify([capture, deadline]() mutable {
    deadline.cancel();
    capture->end();
  });
}

}  // namespace velto
