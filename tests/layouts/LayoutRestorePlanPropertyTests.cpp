// What holds for every layout and every set of displays, on random ones; and the same plan as comparing each
// window with each would give.

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "layouts/LayoutCapture.h"
#include "layouts/LayoutRestorePlan.h"
#include "layouts/LayoutRestorePlanFitting.h"

namespace velto {
namespace {

using Displays = std::vector<LayoutDisplaySnapshot>;
using Entry = LayoutRestorePlan::Entry;

constexpr int kRounds = 500;

class Generator {
 public:
  explicit Generator(unsigned seed) : engine_(seed) {}

  int whole(int low, int high) { return std::uniform_int_distribution(low, high)(engine_); }
  bool chance(int percent) { return whole(1, 100) <= percent; }
  std::mt19937& engine() { return engine_; }

  /// Side by side, in whole points; one is the main display.
  Displays displays(const std::string& keys) {
    Displays made;
    double x = whole(-3000, 0);
    const int count = whole(1, 4);
    const int main = whole(0, count - 1);
    for (int i = 0; i < count; ++i) {
      const Size size{static_cast<double>(whole(200, 2600)), static_cast<double>(whole(150, 1600))};
      const Point origin{x, static_cast<double>(whole(-500, 500))};
      const Rect visible{{origin.x, origin.y + whole(0, 60)}, {size.width, size.height - whole(0, 60)}};
      // One key in three comes back in another set.
      const std::string key = chance(33) ? std::to_string(i) : keys + std::to_string(i);
      made.push_back({key, "Display " + key, {origin, size}, visible, 1, i == main});
      x += size.width;
    }
    return numberedDisplays(made);
  }

  /// Many of the windows touch, as they stand on a coarse grid; `step` is its width in points.
  Layout layout(const Displays& displays, double step, int most = 12) {
    Layout made;
    for (const auto& display : displays) made.displays.push_back(layoutDisplay(display));
    const int count = whole(1, most);
    for (int i = 0; i < count; ++i) {
      const auto& display =
          displays[static_cast<std::size_t>(whole(0, static_cast<int>(displays.size()) - 1))];
      LayoutWindow window;
      window.id = std::to_string(i);
      window.url = chance(10) ? "velto-player://youtube?v=x" : "https://example.com/";
      window.displayKey = chance(5) ? "gone" : display.key;
      window.rect = {step * whole(-2, 20), step * whole(-2, 12), step * whole(1, 12), step * whole(1, 10)};
      if (chance(30)) window.rect.x += whole(-2, 2);
      window.anchors = anchorsOf(window.rect, visibleSize(display));
      made.windows.push_back(window);
    }
    return made;
  }

 private:
  std::mt19937 engine_;
};

bool isInside(const LayoutRect& rect, LayoutSize area) {
  return rect.x >= 0 && rect.y >= 0 && rect.x <= area.w - rect.w && rect.y <= area.h - rect.h;
}

TEST(LayoutRestorePlanPropertyTests, EveryWindowLiesOnItsDisplayAndHoldsItsLimits) {
  Generator random(1);
  for (int round = 0; round < kRounds; ++round) {
    const Displays current = random.displays("b");
    const Layout layout = random.layout(random.displays("a"), random.chance(50) ? 60 : 61.3);
    const auto plan = LayoutRestorePlan::plan(layout, current, static_cast<std::size_t>(random.whole(0, 3)));
    ASSERT_EQ(plan.entries.size(), layout.windows.size());
    for (const Entry& entry : plan.entries) {
      const LayoutSize area = visibleSize(entry.display);
      const Size minimum = LayoutRestorePlan::minimumSize(entry.window);
      EXPECT_TRUE(isInside(entry.rect, area)) << round << " " << entry.window.id;
      EXPECT_GE(entry.rect.w, std::min(minimum.width, area.w));
      EXPECT_GE(entry.rect.h, std::min(minimum.height, area.h));
      EXPECT_NE(std::find(current.begin(), current.end(), entry.display), current.end());
    }
  }
}

/// The windows as they stand when a plan is opened: in whole points, as captured the next moment.
Layout recaptured(const Layout& layout, const LayoutRestorePlan& plan, const Displays& displays) {
  std::vector<WindowSnapshot> snapshots;
  for (const Entry& entry : plan.entries) {
    const Rect area = entry.display.visibleFrame;
    WindowSnapshot snapshot;
    snapshot.id = entry.window.id;
    snapshot.url = entry.window.url;
    snapshot.display = entry.display;
    const LayoutRect rect{std::round(entry.rect.x), std::round(entry.rect.y), std::round(entry.rect.w),
                          std::round(entry.rect.h)};
    snapshot.frame = {{area.minX() + rect.x, area.maxY() - rect.y - rect.h}, {rect.w, rect.h}};
    snapshots.push_back(snapshot);
  }
  return updated(layout, snapshots, displays, {0});
}

std::vector<LayoutRect> rectsOf(const LayoutRestorePlan& plan) {
  std::vector<LayoutRect> rects;
  for (const Entry& entry : plan.entries) rects.push_back(entry.rect);
  return rects;
}

TEST(LayoutRestorePlanPropertyTests, OpeningAndCapturingAHundredTimesMovesNothing) {
  Generator random(2);
  for (int round = 0; round < 100; ++round) {
    const Displays current = random.displays("b");
    Layout layout = random.layout(random.displays("a"), 60);
    const auto first = rectsOf(LayoutRestorePlan::plan(layout, current));
    for (int times = 0; times < 100; ++times) {
      const auto plan = LayoutRestorePlan::plan(layout, current);
      ASSERT_EQ(rectsOf(plan), first) << round << " " << times;
      layout = recaptured(layout, plan, current);
      for (const Entry& entry : LayoutRestorePlan::plan(layout, current).entries) {
        ASSERT_FALSE(entry.adjusted || entry.relocated) << "in whole points, inside an unchanged display";
      }
    }
  }
}

TEST(LayoutRestorePlanPropertyTests, APairThatAbuttedStillDoesUnlessItIsClamped) {
  Generator random(3);
  int checked = 0;
  for (int round = 0; round < 4 * kRounds; ++round) {
    Displays saved = random.displays("a");
    Displays current = random.displays("b");
    saved.resize(1);
    current.resize(1);
    Layout layout = random.layout(saved, 37, 1);
    const LayoutRect first = layout.windows[0].rect;
    const double gap = random.whole(-2, 2);
    LayoutWindow second = layout.windows[0];
    second.rect = {first.x + first.w + gap, first.y + random.whole(-20, 20), 1.0 * random.whole(30, 400),
                   1.0 * random.whole(30, 400)};
    second.anchors = anchorsOf(second.rect, visibleSize(saved[0]));
    layout.windows.push_back(second);
    const auto plan = LayoutRestorePlan::plan(layout, current);
    const LayoutRect& a = plan.entries[0].rect;
    const LayoutRect& b = plan.entries[1].rect;
    const double end = a.x + a.w + gap;
    if (end < 0 || end > visibleSize(current[0]).w - b.w) continue;
    EXPECT_EQ(b.x, end) << round;
    ++checked;
  }
  EXPECT_GT(checked, kRounds);
}

TEST(LayoutRestorePlanPropertyTests, TheOrderOfWindowsThatShareNoEdgeDoesNotMatter) {
  Generator random(4);
  for (int round = 0; round < kRounds; ++round) {
    const Displays current = random.displays("b");
    Layout layout = random.layout(random.displays("a"), 60);
    // Then no two begin at one place, and who comes before whom is told by the places alone.
    for (std::size_t i = 0; i < layout.windows.size(); ++i) {
      layout.windows[i].rect.x += 0.01 * static_cast<double>(i);
      layout.windows[i].rect.y += 0.01 * static_cast<double>(i);
    }
    const auto byId = [](const Entry& a, const Entry& b) { return a.window.id < b.window.id; };
    auto plan = LayoutRestorePlan::plan(layout, current);
    std::shuffle(layout.windows.begin(), layout.windows.end(), random.engine());
    auto shuffled = LayoutRestorePlan::plan(layout, current);
    std::sort(plan.entries.begin(), plan.entries.end(), byId);
    std::sort(shuffled.entries.begin(), shuffled.entries.end(), byId);
    EXPECT_EQ(plan, shuffled) << round;
  }
}

/// Of one axis, by comparing each window with each that stands before it.
void closeGapsPlainly(std::vector<Entry*>& group, double LayoutRect::*origin, double LayoutRect::*length,
                      double LayoutRect::*crossOrigin, double LayoutRect::*crossLength) {
  std::stable_sort(group.begin(), group.end(), [&](const Entry* a, const Entry* b) {
    return a->window.rect.*origin < b->window.rect.*origin;
  });
  for (std::size_t c = 1; c < group.size(); ++c) {
    const LayoutRect& s = group[c]->window.rect;
    const Entry* best = nullptr;
    double bestGap = 0;
    for (std::size_t p = 0; p < c; ++p) {
      const LayoutRect& r = group[p]->window.rect;
      const double gap = s.*origin - (r.*origin + r.*length);
      if (std::abs(gap) > 2.0) continue;
      if (!(std::min(r.*crossOrigin + r.*crossLength, s.*crossOrigin + s.*crossLength) >
            std::max(s.*crossOrigin, r.*crossOrigin))) {
        continue;
      }
      if (best != nullptr && !(std::abs(gap) < std::abs(bestGap))) continue;
      best = group[p];
      bestGap = gap;
    }
    if (best == nullptr) continue;
    LayoutRect moved = group[c]->rect;
    moved.*origin = std::round(bestGap + (best->rect.*origin + best->rect.*length));
    group[c]->rect =
        clampedRect(moved, visibleSize(group[c]->display), LayoutRestorePlan::minimumSize(group[c]->window));
    group[c]->adjusted = group[c]->rect != group[c]->window.rect;
  }
}

TEST(LayoutRestorePlanPropertyTests, SameAsComparingEachWithEach) {
  Generator random(5);
  for (int round = 0; round < kRounds; ++round) {
    const Displays current = random.displays("b");
    const auto target = current.front();
    const Layout layout = random.layout(random.displays("a"), random.chance(50) ? 20 : 20.7, 150);
    std::vector<Entry> entries;
    for (const LayoutWindow& window : layout.windows) {
      const LayoutSize saved{1000.0 + random.whole(0, 3), 800};
      entries.push_back(
          {window, target, fittedRect(window, saved, visibleSize(target), {25, 25}), false, true});
    }
    std::vector<Entry> expected = entries;
    std::vector<Entry*> group;
    for (Entry& entry : expected) group.push_back(&entry);
    closeGapsPlainly(group, &LayoutRect::x, &LayoutRect::w, &LayoutRect::y, &LayoutRect::h);
    group.clear();
    for (Entry& entry : expected) group.push_back(&entry);
    closeGapsPlainly(group, &LayoutRect::y, &LayoutRect::h, &LayoutRect::x, &LayoutRect::w);
    closeGaps(entries);
    for (std::size_t i = 0; i < entries.size(); ++i) ASSERT_EQ(entries[i].rect, expected[i].rect) << round;
  }
}

}  // namespace
}  // namespace velto
