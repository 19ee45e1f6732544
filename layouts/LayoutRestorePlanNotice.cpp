#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <set>
#include <string_view>

#include "layouts/LayoutRestorePlan.h"
#include "layouts/LayoutRestorePlanFitting.h"

namespace velto {
namespace {

/// A whole number, or one decimal. Not through the locale, which may write a comma.
std::string formatted(double value) {
  std::array<char, 512> buffer{};
  const int decimals = value == std::round(value) ? 0 : 1;
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, decimals);
  return {buffer.data(), end.ptr};
}

std::string described(const std::string& name, LayoutSize size) {
  return name + " (" + formatted(size.w) + "×" + formatted(size.h) + ")";
}

std::string counted(std::size_t count, std::string_view noun) {
  return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

std::string displaySentence(const std::vector<LayoutDisplay>& saved, const LayoutDisplaySnapshot& now) {
  const auto main = std::find_if(saved.begin(), saved.end(), [](const auto& d) { return d.isMain; });
  const LayoutDisplay& then = main == saved.end() ? saved.front() : *main;
  const std::string before = described(then.name, {then.visibleFrame.w, then.visibleFrame.h});
  const std::string after = described(now.name, visibleSize(now));
  if (before == after) return "Saved on " + before + "; the arrangement no longer fits as it was.";
  return "Saved on " + before + " — approximated for " + after + ".";
}

}  // namespace

bool LayoutRestorePlan::isApproximated() const {
  return std::any_of(entries.begin(), entries.end(),
                     [](const Entry& e) { return e.relocated || e.adjusted; });
}

std::optional<std::string> LayoutRestorePlan::approximationNotice(const Layout& layout,
                                                                  bool suggestSaving) const {
  if (!isApproximated()) return std::nullopt;
  std::string notice;
  const auto add = [&](const std::string& sentence) { notice += (notice.empty() ? "" : " ") + sentence; };

  if (!layout.displays.empty()) add(displaySentence(layout.displays, entries.front().display));
  std::set<std::string_view> names;
  for (const Entry& entry : entries) names.insert(entry.display.name);
  if (names.size() != layout.displays.size()) {
    add(counted(layout.displays.size(), "display") + " when saved, " + std::to_string(names.size()) +
        " now.");
  }
  if (const std::size_t moved = relocatedCount(); moved > 0) {
    add(counted(moved, "window") + " moved to another display because the one " +
        (moved == 1 ? "it was" : "they were") + " saved on is not connected.");
  }
  if (suggestSaving) {
    add("Move things around, then use Save Layout (Override) or Save as New Layout….");
  }
  return notice;
}

}  // namespace velto
