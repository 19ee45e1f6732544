#include "app/pages/ScrollRestoration.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

namespace velto {

namespace {

constexpr std::array kDelays{0.25, 0.75, 1.5};
constexpr double kNear = 1;

struct Positions {
  LayoutScroll before;
  LayoutScroll after;
};

/// Every digit, never an exponent.
std::string plainDecimal(double number) {
  constexpr std::size_t kLongestDouble = 1100;
  std::array<char, kLongestDouble> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
  return {text.data(), end.ptr};
}

std::string scriptTo(const LayoutScroll& target) {
  return "(function () {\n  var beforeX = window.scrollX || 0;\n  var beforeY = window.scrollY || 0;\n"
         "  window.scrollTo(" +
         plainDecimal(target.x) + ", " + plainDecimal(target.y) +
         ");\n  return [beforeX, beforeY, window.scrollX || 0, window.scrollY || 0];\n})();";
}

std::optional<double> numberFrom(const JsonValue& value) {
  if (const auto* whole = value.as<std::int64_t>()) return static_cast<double>(*whole);
  if (const auto* real = value.as<double>()) return *real;
  return std::nullopt;
}

std::optional<Positions> positionsFrom(const std::optional<JsonValue>& reply) {
  const auto* list = reply ? reply->as<JsonValue::Array>() : nullptr;
  if (list == nullptr || list->size() != 4) return std::nullopt;
  std::array<double, 4> numbers{};
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const auto number = numberFrom((*list)[i]);
    if (!number) return std::nullopt;
    numbers.at(i) = *number;
  }
  return Positions{{numbers[0], numbers[1]}, {numbers[2], numbers[3]}};
}

bool isNear(const LayoutScroll& a, const LayoutScroll& b) {
  return std::abs(a.x - b.x) <= kNear && std::abs(a.y - b.y) <= kNear;
}

void end(HovrelPanel& panel) {
  panel.pendingScrollRestore.reset();
  panel.lastScrollRestoreObservation.reset();
}

}  // namespace

void ScrollRestoration::pageLoaded(WebView& webView) {
  const HovrelPanel* panel = windows_.find(webView);
  if (panel == nullptr || !panel->pendingScrollRestore) return;
  run({webView, *panel->pendingScrollRestore, panel->currentNavigation});
}

HovrelPanel* ScrollRestoration::panelOf(const Pass& pass) const {
  HovrelPanel* panel = pass.page ? windows_.find(*pass.page) : nullptr;
  const bool goesOn = panel != nullptr && panel->pendingScrollRestore == pass.target &&
                      panel->currentNavigation == pass.navigation;
  return goesOn ? panel : nullptr;
}

void ScrollRestoration::run(const Pass& pass) {
  if (panelOf(pass) == nullptr) return;
  pass.page->evaluateJavaScript(scriptTo(pass.target), [self = WeakPtr<ScrollRestoration>(*this),
                                                        pass](const std::optional<JsonValue>& reply) {
    if (self) self->measured(pass, reply);
  });
}

void ScrollRestoration::measured(Pass pass, const std::optional<JsonValue>& reply) {
  HovrelPanel* panel = panelOf(pass);
  if (panel == nullptr) return;
  const auto positions = positionsFrom(reply);
  if (!positions) return end(*panel);
  // The page itself tells it only later.
  panel->lastKnownScroll = positions->after;
  const auto& seen = panel->lastScrollRestoreObservation;
  const bool movedByOthers = seen && !isNear(positions->before, *seen);
  if (movedByOthers || isNear(positions->after, pass.target) || pass.number == kDelays.size()) {
    return end(*panel);
  }
  panel->lastScrollRestoreObservation = positions->after;
  const double delay = kDelays.at(pass.number);
  ++pass.number;
  queue_.after(delay, [self = WeakPtr<ScrollRestoration>(*this), pass = std::move(pass)] {
    if (self) self->run(pass);
  });
}

}  // namespace velto
