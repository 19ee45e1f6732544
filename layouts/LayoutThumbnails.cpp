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
constexpr const char* kEnabledKey = "layoutThumbnailsEnabled";

/// From the identifier of a window to the path of its picture.
using Paths = std::map<std::string, std::string>;

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

void putIntoLayout(LayoutStore& store, const std::string& id, const Paths& paths) {
  if (paths.empty()) return;
  auto layout = store.layoutWithId(id);
  if (!layout) return;
  for (LayoutWindow& window : layout->windows) {
    const auto path = paths.find(window.id);
    if (path != paths.end()) window.thumbnail = path->second;
  }
  try {
    store.save(*layout);
  } catch (const std::exception&) {
    // The layout stays without the pictures.
  }
}

}  // namespace

void captureThumbnails(const Layout& layout, const Application& application, LayoutStore& store,
                       const UserDefaults& defaults, MainQueue& mainQueue, Task completion) {
  if (!defaults.boolean(kEnabledKey).value_or(true)) {
    if (completion) completion();
    return;
  }
  const auto pages = openPages(application);
  const auto paths = std::make_shared<Paths>();
  const WeakPtr<LayoutStore> kept(store);
  DispatchGroup group(mainQueue);
  for (const LayoutWindow& window : layout.windows) {
    const auto page = pages.find(window.url);
    if (page == pages.end()) continue;
    group.enter();
    const auto taken = [=, layoutId = layout.id, windowId = window.id,
                        pending = group](const std::optional<std::string>& png) mutable {
      try {
        if (png && kept) (*paths)[windowId] = kept->writeThumbnail(*png, layoutId, windowId);
      } catch (const std::exception&) {
        // It stays without a new picture.
      }
      pending.leave();
    };
    page->second->takeSnapshot(pictureWidth(page->second->bounds().size), taken);
  }
  group.notify([kept, paths, id = layout.id, completion = std::move(completion)]() mutable {
    if (kept) putIntoLayout(*kept, id, *paths);
    if (completion) completion();
  });
}

}  // namespace velto
