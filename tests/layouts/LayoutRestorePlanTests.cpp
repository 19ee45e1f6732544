#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "layouts/LayoutRestorePlan.h"

namespace velto {
namespace {

/// A display whose visible frame leaves 32 points at the top.
LayoutDisplaySnapshot now(std::string key, double x, double w, double h, bool isMain = false,
                          std::string name = "Display B") {
  return {std::move(key), std::move(name), {{x, 0}, {w, h + 32}}, {{x, 0}, {w, h}}, 1, isMain};
}

LayoutDisplay then(std::string key, double x, double w, double h, bool isMain = false,
                   std::string name = "Display A") {
  return {std::move(key), std::move(name), {w, h + 32}, {x, 0, w, h}, 1, isMain};
}

LayoutWindow window(LayoutRect rect, LayoutAnchors anchors = {}, std::string key = "k") {
  LayoutWindow made;
  made.url = "https://example.com/";
  made.rect = rect;
  made.anchors = anchors;
  made.displayKey = std::move(key);
  return made;
}

Layout layout(std::vector<LayoutDisplay> displays, std::vector<LayoutWindow> windows) {
  Layout made;
  made.displays = std::move(displays);
  made.windows = std::move(windows);
  return made;
}

constexpr LayoutAnchors kLeft{.left = true};
constexpr LayoutAnchors kRight{.right = true};
constexpr LayoutAnchors kAcross{.left = true, .right = true};
constexpr LayoutAnchors kBottomCentered{.bottom = true, .centerX = true};
constexpr LayoutAnchors kDown{.top = true, .bottom = true, .centerX = true};
constexpr LayoutAnchors kCentered{.centerX = true, .centerY = true};

TEST(LayoutRestorePlanTests, FitsOneWindow) {
  const char* const page = "https://example.com/";
  const char* const player = "Velto-Player://YouTube?v=x";
  const struct {
    const char* what;
    const char* url;
    LayoutSize saved, target;
    LayoutRect rect;
    LayoutAnchors anchors;
    LayoutRect expected;
  } cases[] = {
      {"in place", page, {1000, 800}, {1000, 800}, {5.5, 10, 300, 200}, kLeft, {5.5, 10, 300, 200}},
      {"partly off", page, {1000, 800}, {1000, 800}, {900, -10, 300, 200}, {}, {700, 0, 300, 200}},
      {"far too large", page, {1000, 800}, {1000, 800}, {-5, 700, 2000, 900}, {}, {0, 0, 1000, 800}},
      {"tiny", page, {1000, 800}, {1000, 800}, {990, 10, 3, 3}, {}, {975, 10, 25, 25}},
      {"one factor for both",
       page,
       {1000, 1000},
       {2000, 1500},
       {100, 100, 200, 200},
       {},
       {250, 150, 300, 300}},
      {"halves away from zero", page, {1000, 1000}, {500, 500}, {100, 100, 101, 103}, {}, {50, 50, 51, 52}},
      {"left", page, {1000, 800}, {500, 400}, {5, 100, 300, 200}, kLeft, {0, 50, 150, 100}},
      {"right", page, {1000, 800}, {500.5, 400}, {692, 100, 300, 200}, kRight, {350.5, 50, 150, 100}},
      {"fills the width", page, {1000, 800}, {2000, 800}, {3, 100, 996, 200}, kAcross, {0, 100, 2000, 200}},
      {"bottom", page, {1000, 800}, {801, 800}, {350, 600, 300, 200}, kBottomCentered, {281, 640, 240, 160}},
      {"fills the height", page, {1000, 800}, {500, 800}, {350, 0, 300, 800}, kDown, {175, 0, 150, 800}},
      {"centered", page, {1000, 800}, {2000, 1600}, {400, 300, 200, 200}, kCentered, {800, 600, 400, 400}},
      {"no saved size", page, {0, 0}, {500, 400}, {450, 10, 100, 100}, {}, {400, 10, 100, 100}},
      {"no size now", page, {1000, 800}, {0, 400}, {-450, 10, 5, 100}, {}, {-450, 10, 5, 100}},
      {"player", player, {1000, 800}, {500, 400}, {0, 0, 400, 225}, kLeft, {0, 0, 320, 180}},
      {"no player", "velto-player://other", {1000, 800}, {500, 400}, {0, 0, 40, 22}, kLeft, {0, 0, 25, 25}},
      {"small display", player, {1000, 800}, {300, 100}, {0, 0, 400, 225}, kLeft, {0, 0, 300, 100}},
      {"huge", page, {1e-300, 1e308}, {500, 400}, {1e308, -1e308, 1e308, 1e308}, {}, {0, 0, 500, 400}},
  };
  for (const auto& c : cases) {
    LayoutWindow saved = window(c.rect, c.anchors);
    saved.url = c.url;
    const auto plan = LayoutRestorePlan::plan(layout({then("k", 0, c.saved.w, c.saved.h, true)}, {saved}),
                                              {now("k", 70, c.target.w, c.target.h, true)});
    ASSERT_EQ(plan.entries.size(), 1U);
    const LayoutRect& rect = plan.entries[0].rect;
    EXPECT_EQ(rect, c.expected) << c.what << ": " << rect.x << " " << rect.y << " " << rect.w;
    EXPECT_EQ(plan.entries[0].adjusted, c.rect != c.expected) << c.what;
    EXPECT_FALSE(plan.entries[0].relocated) << c.what;
  }
}

TEST(LayoutRestorePlanTests, MapsDisplays) {
  const auto old = [](std::string key, double x, bool isMain = false) {
    return then(std::move(key), x, 100, 100, isMain);
  };
  const auto cur = [](std::string key, double x, bool isMain = false) {
    return now(std::move(key), x, 100, 100, isMain);
  };
  const struct {
    const char* what;
    std::vector<LayoutDisplay> saved;
    std::vector<LayoutDisplaySnapshot> current;
    /// "saved key>current key", ordered by the first.
    std::vector<std::string> expected;
  } cases[] = {
      {"nothing now", {old("a", 0)}, {}, {}},
      {"by key", {old("a", 0, true), old("b", 9)}, {cur("b", 0, true), cur("a", 9)}, {"a>a", "b>b"}},
      {"main to main, taken or not",
       {old("a", 0, true), old("b", 9)},
       {cur("b", 0, true), cur("c", 9)},
       {"a>b", "b>b"}},
      {"rest from left to right",
       {old("m", 0, true), old("r", 9), old("l", -9)},
       {cur("2", 5, true), cur("1", 0)},
       {"l>1", "m>2", "r>2"}},
      {"one too many", {old("m", 0, true), old("r", 9), old("l", -9)}, {cur("n", 5, true)}, {"l>n", "m>n"}},
      {"two main", {old("a", 5, true), old("b", 0, true)}, {cur("1", 0, true), cur("2", 9)}, {"a>1", "b>1"}},
      {"no main now", {old("m", 0, true)}, {cur("2", 9), cur("1", 0)}, {"m>1"}},
      {"at one edge", {old("a", 0), old("b", 0)}, {cur("1", 0), cur("2", 0)}, {"a>1", "b>2"}},
  };
  for (const auto& c : cases) {
    std::vector<std::string> pairs;
    for (const auto& [key, target] : LayoutRestorePlan::displayMap(c.saved, c.current)) {
      pairs.push_back(key + ">" + target.key);
    }
    EXPECT_EQ(pairs, c.expected) << c.what;
  }
}

TEST(LayoutRestorePlanTests, WindowsWithoutADisplayGoToTheMainOne) {
  const std::vector<LayoutDisplaySnapshot> current = {now("x", 0, 500, 400), now("n", 500, 500, 400, true)};
  const Layout gone = layout(
      {then("m", 0, 500, 400, true), then("1", 9, 500, 400), then("2", 8, 500, 400), then("3", 99, 500, 400)},
      {window({0, 0, 50, 50}, {}, "3"), window({0, 0, 50, 50}, {}, "1")});
  const auto plan = LayoutRestorePlan::plan(gone, current);
  EXPECT_EQ(plan.entries[0].display.key, "n");
  EXPECT_TRUE(plan.entries[0].relocated);
  EXPECT_FALSE(plan.entries[0].adjusted);
  EXPECT_FALSE(plan.entries[1].relocated);
  EXPECT_EQ(plan.relocatedCount(), 1U);

  const auto none = LayoutRestorePlan::plan(layout({}, {window({450, 0, 100, 50})}), current);
  EXPECT_EQ(none.entries[0].rect, (LayoutRect{400, 0, 100, 50}));
  EXPECT_TRUE(none.entries[0].relocated);
  EXPECT_TRUE(LayoutRestorePlan::plan(gone, {}).entries.empty());
}

TEST(LayoutRestorePlanTests, WindowsThatTouchedStillTouchTheNearestOne) {
  const Layout saved = layout({then("k", 0, 1000, 1000, true)},
                              {window({3, 0, 496, 300}), window({3, 300, 498, 300}),
                               window({501, 100, 301, 400}), window({804.5, 100, 100, 100})});
  const auto plan = LayoutRestorePlan::plan(saved, {now("k", 0, 800, 800, true)});
  const LayoutRect expected[] = {
      {2, 0, 397, 240}, {3, 240, 398, 240}, {401, 80, 241, 320}, {644, 80, 80, 80}};
  for (std::size_t i = 0; i < plan.entries.size(); ++i) EXPECT_EQ(plan.entries[i].rect, expected[i]) << i;
}

TEST(LayoutRestorePlanTests, CopiesMoveRightAndDown) {
  const Layout saved =
      layout({then("k", 0, 500, 400, true)},
             {window({10, 10, 100, 100}), window({390, 10, 100, 100}), window({0, 0, 600, 50})});
  const std::vector<LayoutDisplaySnapshot> current = {now("k", 0, 500, 400, true)};
  const auto second = LayoutRestorePlan::plan(saved, current, 2);
  EXPECT_EQ(second.entries[0].rect, (LayoutRect{58, 58, 100, 100}));
  EXPECT_FALSE(second.entries[0].adjusted) << "an offset alone approximates nothing";
  EXPECT_EQ(second.entries[1].rect, (LayoutRect{400, 58, 100, 100}));
  EXPECT_EQ(second.entries[2].rect, (LayoutRect{0, 48, 500, 50}));
  EXPECT_TRUE(second.entries[2].adjusted);
}

std::optional<std::string> notice(const Layout& saved, const std::vector<LayoutDisplaySnapshot>& current) {
  return LayoutRestorePlan::plan(saved, current).approximationNotice(saved, false);
}

TEST(LayoutRestorePlanTests, Notices) {
  const LayoutWindow inside = window({0, 0, 100, 100});
  const LayoutWindow outside = window({1500, 0, 100, 100});
  const Layout one = layout({then("k", 0, 1512, 944, true)}, {outside});
  EXPECT_EQ(notice(layout(one.displays, {inside}), {now("k", 0, 1512, 944, true)}), std::nullopt);
  EXPECT_EQ(notice(one, {now("j", 0, 1920, 1050, true)}),
            "Saved on Display A (1512×944) — approximated for Display B (1920×1050).");
  EXPECT_EQ(notice(one, {now("k", 0, 1000.25, 0.96, true)}),
            "Saved on Display A (1512×944) — approximated for Display B (1000.2×1.0).");

  Layout three =
      layout({then("1", 0, 800, 600), then("2", 9, 800, 600, true, "Main"), then("3", 99, 800, 600)},
             {window({0, 0, 100, 100}, {}, "3"), window({0, 0, 100, 100}, {}, "2")});
  EXPECT_EQ(notice(three, {now("n", 0, 800, 600, true)}),
            "Saved on Main (800×600) — approximated for Display B (800×600). 3 displays when saved, 1 now. "
            "1 window moved to another display because the one it was saved on is not connected.");
  three.windows[1].displayKey = "3";
  EXPECT_EQ(notice(layout({}, three.windows), {now("n", 0, 800, 600, true)}),
            "0 displays when saved, 1 now. "
            "2 windows moved to another display because the one they were saved on is not connected.");
}

}  // namespace
}  // namespace velto
