#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <optional>
#include <string_view>

#include "layouts/LayoutRestorePlanFitting.h"

namespace velto {
namespace {

using Entry = LayoutRestorePlan::Entry;

/// Windows this close to each other touch.
constexpr double kTouching = 2.0;

/// The members of `LayoutRect` that an axis works on, and those across it.
struct AxisMembers {
  double LayoutRect::*origin;
  double LayoutRect::*length;
  double LayoutRect::*crossOrigin;
  double LayoutRect::*crossLength;

  [[nodiscard]] double end(const LayoutRect& rect) const { return rect.*origin + rect.*length; }

  [[nodiscard]] bool overlapAcross(const LayoutRect& a, const LayoutRect& b) const {
    return std::min(a.*crossOrigin + a.*crossLength, b.*crossOrigin + b.*crossLength) >
           std::max(a.*crossOrigin, b.*crossOrigin);
  }
};

constexpr AxisMembers kAlongX{&LayoutRect::x, &LayoutRect::w, &LayoutRect::y, &LayoutRect::h};
constexpr AxisMembers kAlongY{&LayoutRect::y, &LayoutRect::h, &LayoutRect::x, &LayoutRect::w};

struct Neighbour {
  std::size_t rank;
  double gap;

  [[nodiscard]] bool isNearerThan(const Neighbour& other) const {
    const double distance = std::abs(gap);
    const double otherDistance = std::abs(other.gap);
    return distance < otherDistance || (distance == otherDistance && rank < other.rank);
  }
};

/// The windows of one display, along one axis. Who touches whom is a matter of saved rectangles alone, so it
/// is looked up by far edges rather than by comparing each window with each.
class Row {
 public:
  Row(std::vector<Entry*> entries, const AxisMembers& axis) : entries_(std::move(entries)), axis_(axis) {
    std::stable_sort(entries_.begin(), entries_.end(), [&](const Entry* a, const Entry* b) {
      return a->window.rect.*axis_.origin < b->window.rect.*axis_.origin;
    });
    ends_.reserve(entries_.size());
    for (const Entry* entry : entries_) ends_.push_back({axis_.end(entry->window.rect), ends_.size()});
    std::sort(ends_.begin(), ends_.end());
  }

  void close() {
    for (std::size_t rank = 1; rank < entries_.size(); ++rank) {
      if (const auto nearest = nearestBefore(rank)) follow(*entries_[rank], *nearest);
    }
  }

 private:
  using End = std::pair<double, std::size_t>;

  [[nodiscard]] std::optional<Neighbour> nearestBefore(std::size_t rank) const {
    const LayoutRect& saved = entries_[rank]->window.rect;
    const double start = saved.*axis_.origin;
    auto end = std::partition_point(ends_.begin(), ends_.end(),
                                    [&](const End& e) { return start - e.first > kTouching; });
    std::optional<Neighbour> best;
    for (; end != ends_.end() && start - end->first >= -kTouching; ++end) {
      const Neighbour candidate{end->second, start - end->first};
      if (candidate.rank >= rank || (best && !candidate.isNearerThan(*best))) continue;
      if (axis_.overlapAcross(entries_[candidate.rank]->window.rect, saved)) best = candidate;
    }
    return best;
  }

  void follow(Entry& entry, const Neighbour& neighbour) const {
    LayoutRect moved = entry.rect;
    moved.*axis_.origin = std::round(neighbour.gap + axis_.end(entries_[neighbour.rank]->rect));
    entry.rect = clampedRect(moved, visibleSize(entry.display), LayoutRestorePlan::minimumSize(entry.window));
    entry.adjusted = entry.rect != entry.window.rect;
  }

  std::vector<Entry*> entries_;
  AxisMembers axis_;
  /// Far edges, ascending, each with the place of its window in `entries_`.
  std::vector<End> ends_;
};

}  // namespace

void closeGaps(std::vector<Entry>& entries) {
  std::map<std::string_view, std::vector<Entry*>> groups;
  for (Entry& entry : entries) groups[entry.display.key].push_back(&entry);
  for (const auto& group : groups) {
    Row(group.second, kAlongX).close();
    Row(group.second, kAlongY).close();
  }
}

}  // namespace velto
