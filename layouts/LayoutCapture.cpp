#include "layouts/LayoutCapture.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <map>
#include <tuple>
#include <utility>

#include "layouts/DisplayChoice.h"
#include "platform/foundation/Url.h"

namespace velto {
namespace {

constexpr double kAnchorTolerance = 8.0;

std::string wholeNumber(double value) {
  std::array<char, 512> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::round(value),
                                 std::chars_format::fixed, 0);
  return {buffer.data(), end.ptr};
}

bool standsBefore(const LayoutDisplaySnapshot& a, const LayoutDisplaySnapshot& b) {
  return std::make_tuple(!a.isMain, a.frame.minX(), a.frame.minY()) <
         std::make_tuple(!b.isMain, b.frame.minX(), b.frame.minY());
}

bool isFurtherLeft(const LayoutDisplaySnapshot* a, const LayoutDisplaySnapshot* b) {
  return std::make_pair(a->frame.minX(), a->frame.minY()) < std::make_pair(b->frame.minX(), b->frame.minY());
}

LayoutNormalizedRect normalizedRect(const LayoutRect& rect, LayoutSize visible) {
  if (!(visible.w > 0 && visible.h > 0)) return {};
  return {rect.x / visible.w, rect.y / visible.h, rect.w / visible.w, rect.h / visible.h};
}

bool isNear(double a, double b) { return std::abs(a - b) <= kAnchorTolerance; }

}  // namespace

std::string displayKey(const DisplayIdentity& identity, std::string_view name, Size size) {
  std::string key;
  if (identity == DisplayIdentity{}) {
    key = "name:" + std::string(name.empty() ? "display" : name);
  } else {
    key = std::to_string(identity.vendor) + ":" + std::to_string(identity.model) + ":" +
          std::to_string(identity.serial);
  }
  return key + ":" + wholeNumber(size.width) + "x" + wholeNumber(size.height);
}

std::vector<LayoutDisplaySnapshot> numberedDisplays(std::vector<LayoutDisplaySnapshot> displays) {
  std::stable_sort(displays.begin(), displays.end(), standsBefore);
  std::map<std::string, std::vector<LayoutDisplaySnapshot*>> byKey;
  for (LayoutDisplaySnapshot& display : displays) byKey[display.key].push_back(&display);
  for (auto& group : byKey) {
    auto& equals = group.second;
    if (equals.size() < 2) continue;
    std::stable_sort(equals.begin(), equals.end(), isFurtherLeft);
    for (std::size_t i = 0; i < equals.size(); ++i) equals[i]->key += "#" + std::to_string(i + 1);
  }
  return displays;
}

const LayoutDisplaySnapshot* displayWithKey(const std::vector<LayoutDisplaySnapshot>& displays,
                                            const std::optional<std::string>& key) {
  return byKeyElseMain(displays, key);
}

LayoutAnchors anchorsOf(const LayoutRect& rect, LayoutSize visible) {
  if (!(visible.w > 0 && visible.h > 0)) return {};
  LayoutAnchors anchors;
  anchors.left = isNear(rect.x, 0);
  anchors.right = isNear(visible.w, rect.x + rect.w);
  anchors.top = isNear(rect.y, 0);
  anchors.bottom = isNear(visible.h, rect.y + rect.h);
  anchors.centerX = !anchors.left && !anchors.right && isNear(rect.x + rect.w * 0.5, visible.w * 0.5);
  anchors.centerY = !anchors.top && !anchors.bottom && isNear(rect.y + rect.h * 0.5, visible.h * 0.5);
  return anchors;
}

LayoutWindow layoutWindow(const WindowSnapshot& snapshot, WallTime capturedAt) {
  const Rect& frame = snapshot.frame;
  const Rect& area = snapshot.display.visibleFrame;
  const LayoutSize visible{area.size.width, area.size.height};
  LayoutWindow window;
  window.id = snapshot.id;
  window.url = snapshot.url;
  window.title = snapshot.title;
  window.displayKey = snapshot.display.key;
  window.rect = {frame.minX() - area.minX(), area.maxY() - frame.maxY(), frame.size.width, frame.size.height};
  window.normalized = normalizedRect(window.rect, visible);
  window.anchors = anchorsOf(window.rect, visible);
  window.zoom = snapshot.zoom;
  window.chromeless = snapshot.chromeless;
  window.pinned = snapshot.pinned;
  window.scroll = snapshot.scroll;
  if (snapshot.noFocus) window.noFocus = true;
  window.capturedAt = capturedAt;
  return window;
}

LayoutDisplay layoutDisplay(const LayoutDisplaySnapshot& snapshot) {
  const Rect& area = snapshot.visibleFrame;
  return {.key = snapshot.key,
          .name = snapshot.name,
          .frame = {snapshot.frame.size.width, snapshot.frame.size.height},
          .visibleFrame = {area.minX(), area.minY(), area.size.width, area.size.height},
          .backingScaleFactor = snapshot.backingScaleFactor,
          .isMain = snapshot.isMain};
}

Layout updated(Layout layout, const std::vector<WindowSnapshot>& snapshots,
               const std::vector<LayoutDisplaySnapshot>& displays, WallTime date) {
  const std::vector<LayoutWindow> before = std::exchange(layout.windows, {});
  std::map<std::string_view, const LayoutWindow*> byPage;
  for (const LayoutWindow& window : before) byPage.emplace(window.url, &window);

  layout.updatedAt = date;
  layout.displays.clear();
  for (const LayoutDisplaySnapshot& display : displays) layout.displays.push_back(layoutDisplay(display));
  for (const WindowSnapshot& snapshot : snapshots) {
    LayoutWindow window = layoutWindow(snapshot, date);
    if (const auto known = byPage.extract(snapshot.url)) {
      window.id = known.mapped()->id;
      window.thumbnail = known.mapped()->thumbnail;
    }
    layout.windows.push_back(std::move(window));
  }
  return layout;
}

std::vector<WindowSnapshot> localFileSnapshots(const std::vector<WindowSnapshot>& snapshots) {
  std::vector<WindowSnapshot> local;
  std::copy_if(snapshots.begin(), snapshots.end(), std::back_inserter(local), [](const WindowSnapshot& s) {
    const auto url = Url::parse(s.url);
    return url && url->lowercasedScheme() == "file";
  });
  return local;
}

}  // namespace velto
