#include "layouts/LayoutManager.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "app/launch/PageKey.h"
#include "layouts/LayoutError.h"
#include "layouts/LayoutThumbnails.h"
#include "layouts/OpenWindowCapture.h"
#include "platform/foundation/Text.h"
#include "platform/foundation/Uuid.h"

namespace velto {
namespace {

constexpr const char* kCurrentLayoutKey = "currentLayoutID";

std::int64_t whole(double value) {
  constexpr double kBeyondAnyScreen = 1e9;
  return std::llround(std::clamp(value, -kBeyondAnyScreen, kBeyondAnyScreen));
}

WindowOptions optionsFor(const LayoutRestorePlan::Entry& entry,
                         const std::map<std::string, Screen>& screens) {
  const LayoutWindow& window = entry.window;
  WindowOptions options;
  options.width = whole(entry.rect.w);
  options.height = whole(entry.rect.h);
  options.x = whole(entry.rect.x);
  options.y = whole(entry.rect.y);
  options.hide = window.chromeless;
  if (window.zoom > 0) options.zoom = window.zoom;
  const auto screen = screens.find(entry.display.key);
  if (screen != screens.end()) options.targetScreen = screen->second;
  options.scroll = window.scroll;
  options.onTop = window.pinned;
  options.noFocus = window.noFocus.value_or(false);
  return options;
}

std::vector<WindowSnapshot> capturedWindows(const Application& application,
                                            const std::vector<LayoutDisplaySnapshot>& displays) {
  auto windows = snapshots(application, displays);
  if (windows.empty()) throw LayoutError(LayoutError::Kind::noWindowsToCapture);
  return windows;
}

}  // namespace

LayoutManager::LayoutManager(const Platform& platform, LayoutStore& store, LayoutSaveSheet& saveSheet,
                             Toasts& toasts)
    : platform_(platform), store_(store), saveSheet_(saveSheet), toasts_(toasts) {}

std::optional<std::string> LayoutManager::currentLayoutID() const {
  return platform_.defaults.string(kCurrentLayoutKey);
}

void LayoutManager::setCurrentLayoutID(std::string_view id) {
  if (id.empty()) {
    platform_.defaults.remove(kCurrentLayoutKey);
  } else {
    platform_.defaults.set(kCurrentLayoutKey, std::string(id));
  }
}

std::optional<Layout> LayoutManager::currentLayout() const {
  const auto id = currentLayoutID();
  return id ? store_.layoutWithId(*id) : std::nullopt;
}

void LayoutManager::open(const Layout& layout, bool exact) {
  setCurrentLayoutID(layout.id);
  const std::size_t copies = exact ? 0 : copiesOpen(layout);
  const auto plan = LayoutRestorePlan::plan(layout, currentDisplays(platform_.application), copies);
  openEntries(plan.entries);
  const auto notice = plan.approximationNotice(layout, false);
  if (!notice) return;
  // Later, so that the windows come up first.
  platform_.mainQueue.async([self = WeakPtr<LayoutManager>(*this), layout, notice = *notice] {
    if (self) self->showApproximation(layout, notice);
  });
}

void LayoutManager::openCopy(const Layout& layout) {
  const std::size_t copies = std::max<std::size_t>(copiesOpen(layout), 1);
  openEntries(LayoutRestorePlan::plan(layout, currentDisplays(platform_.application), copies).entries);
}

void LayoutManager::openEntries(const Entries& entries) {
  std::map<std::string, Screen> screens;
  for (const Screen& screen : platform_.application.screens())
    screens.try_emplace(displayKey(screen), screen);
  for (auto entry = entries.rbegin(); entry != entries.rend() && opener_; ++entry) {
    if (const auto url = Url::parse(entry->window.url))
      opener_->openWindow(*url, optionsFor(*entry, screens));
  }
}

std::size_t LayoutManager::copiesOpen(const Layout& layout) const {
  const auto first = layout.windows.empty() ? std::nullopt : Url::parse(layout.windows.front().url);
  const auto page = first ? canonicalPageKey(*first) : std::nullopt;
  if (!page) return 0;
  const auto panels = openPanels(platform_.application);
  const auto count = std::count_if(panels.begin(), panels.end(), [&](const HovrelPanel* panel) {
    const auto url = panel->webView ? panel->webView->url() : std::nullopt;
    return url && canonicalPageKey(*url) == page;
  });
  return static_cast<std::size_t>(count);
}

Layout LayoutManager::save(const std::string& name, WallTime date) {
  const auto displays = currentDisplays(platform_.application);
  Layout layout = newLayout(name, capturedWindows(platform_.application, displays), date);
  store(layout);
  return layout;
}

Layout LayoutManager::update(const Layout& layout, WallTime date) {
  const auto displays = currentDisplays(platform_.application);
  Layout recaptured = updated(layout, capturedWindows(platform_.application, displays), displays, date);
  store(recaptured);
  return recaptured;
}

void LayoutManager::rename(Layout layout, std::string_view name) {
  layout.name = trimWhitespaceAndNewlines(name);
  if (layout.name.empty()) throw LayoutError(LayoutError::Kind::emptyName);
  store_.save(layout);
}

Layout LayoutManager::newLayout(const std::string& name, const std::vector<WindowSnapshot>& windows,
                                WallTime date) const {
  Layout layout;
  layout.id = makeUuid();
  layout.name = name;
  layout.createdAt = date;
  return updated(std::move(layout), windows, currentDisplays(platform_.application), date);
}

void LayoutManager::store(const Layout& layout) {
  store_.save(layout);
  setCurrentLayoutID(layout.id);
  captureThumbnails(layout, platform_.application, store_, platform_.defaults, platform_.mainQueue);
}

}  // namespace velto
