#include "layouts/LayoutRestorePlan.h"

#include <algorithm>

#include "app/launch/PlayerUrl.h"
#include "layouts/LayoutRestorePlanFitting.h"
#include "platform/foundation/Text.h"

namespace velto {
namespace {

constexpr double kCopyOffset = 24.0;
constexpr Size kMinimumPage{25, 25};
constexpr Size kMinimumPlayer{320, 180};
constexpr std::string_view kPlayerScheme = "velto-player:";

template <typename Range>
auto mainOf(const Range& displays) {
  return std::find_if(displays.begin(), displays.end(), [](const auto& display) { return display.isMain; });
}

const LayoutDisplaySnapshot& fallbackOf(const LayoutRestorePlan::Displays& displays) {
  const auto main = mainOf(displays);
  return main == displays.end() ? displays.front() : *main;
}

void mapEqualKeys(LayoutRestorePlan::DisplayMap& map, const std::vector<LayoutDisplay>& saved,
                  const LayoutRestorePlan::Displays& current) {
  for (const LayoutDisplay& display : saved) {
    const auto same =
        std::find_if(current.begin(), current.end(), [&](const auto& now) { return now.key == display.key; });
    if (same != current.end()) map.emplace(display.key, *same);
  }
}

void mapMain(LayoutRestorePlan::DisplayMap& map, const std::vector<LayoutDisplay>& saved,
             const LayoutRestorePlan::Displays& current) {
  const auto unmapped = std::find_if(saved.begin(), saved.end(), [&](const LayoutDisplay& display) {
    return display.isMain && !map.contains(display.key);
  });
  const auto main = mainOf(current);
  if (unmapped != saved.end() && main != current.end()) map.emplace(unmapped->key, *main);
}

void mapByPosition(LayoutRestorePlan::DisplayMap& map, const std::vector<LayoutDisplay>& saved,
                   LayoutRestorePlan::Displays current) {
  std::vector<const LayoutDisplay*> rest;
  for (const LayoutDisplay& display : saved) {
    if (!map.contains(display.key)) rest.push_back(&display);
  }
  std::stable_sort(rest.begin(), rest.end(), [](const LayoutDisplay* a, const LayoutDisplay* b) {
    return a->visibleFrame.x < b->visibleFrame.x;
  });
  std::stable_sort(current.begin(), current.end(),
                   [](const auto& a, const auto& b) { return a.frame.minX() < b.frame.minX(); });
  const std::size_t pairs = std::min(rest.size(), current.size());
  for (std::size_t i = 0; i < pairs; ++i) map.insert_or_assign(rest[i]->key, current[i]);
}

LayoutRestorePlan::Entry entryFor(const LayoutWindow& window, const LayoutDisplay* saved,
                                  const LayoutRestorePlan::DisplayMap& map,
                                  const LayoutDisplaySnapshot& fallback) {
  const auto mapping = saved == nullptr ? map.end() : map.find(saved->key);
  const bool relocated = mapping == map.end();
  const LayoutDisplaySnapshot& target = relocated ? fallback : mapping->second;
  const LayoutSize savedSize =
      saved == nullptr ? LayoutSize{} : LayoutSize{saved->visibleFrame.w, saved->visibleFrame.h};
  const LayoutRect rect =
      fittedRect(window, savedSize, visibleSize(target), LayoutRestorePlan::minimumSize(window));
  return {window, target, rect, relocated, rect != window.rect};
}

void moveCopy(LayoutRestorePlan::Entry& entry, double offset) {
  LayoutRect moved = entry.rect;
  moved.x += offset;
  moved.y += offset;
  entry.rect = clampedRect(moved, visibleSize(entry.display), LayoutRestorePlan::minimumSize(entry.window));
}

}  // namespace

LayoutRestorePlan LayoutRestorePlan::plan(const Layout& layout, const Displays& displays,
                                          std::size_t copies) {
  if (displays.empty()) return {};
  const DisplayMap map = displayMap(layout.displays, displays);
  const LayoutDisplaySnapshot& fallback = fallbackOf(displays);
  LayoutRestorePlan plan;
  plan.entries.reserve(layout.windows.size());
  for (const LayoutWindow& window : layout.windows) {
    plan.entries.push_back(entryFor(window, layout.displayOf(window), map, fallback));
  }
  closeGaps(plan.entries);
  if (copies > 0) {
    for (Entry& entry : plan.entries) moveCopy(entry, static_cast<double>(copies) * kCopyOffset);
  }
  return plan;
}

LayoutRestorePlan::DisplayMap LayoutRestorePlan::displayMap(const std::vector<LayoutDisplay>& saved,
                                                            const Displays& current) {
  DisplayMap map;
  mapEqualKeys(map, saved, current);
  mapMain(map, saved, current);
  mapByPosition(map, saved, current);
  return map;
}

Size LayoutRestorePlan::minimumSize(const LayoutWindow& window) {
  // Most pages are told apart by their scheme, which saves reading the whole URL.
  const bool mayBePlayer =
      lowercased(std::string_view(window.url).substr(0, kPlayerScheme.size())) == kPlayerScheme;
  if (!mayBePlayer) return kMinimumPage;
  const auto url = Url::parse(window.url);
  return url && isPlayerURL(*url) ? kMinimumPlayer : kMinimumPage;
}

std::size_t LayoutRestorePlan::relocatedCount() const {
  return static_cast<std::size_t>(
      std::count_if(entries.begin(), entries.end(), [](const Entry& entry) { return entry.relocated; }));
}

}  // namespace velto
