#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "controlbar/WindowChromeOverlay.h"
#include "platform/headless/HeadlessPlatform.h"

namespace velto {
namespace {

std::string nameAt(View& view, Point point) {
  const View* hit = view.hitTest(point);
  return hit == nullptr ? "" : hit->identifier();
}

TEST(WindowChromeOverlay, gripsLieAlongTheEdgesAndThePageBetweenThem) {
  WindowChromeOverlay overlay({{0, 0}, {300, 200}});
  const struct {
    Point point;
    std::string grip;
  } cases[] = {
      {{22, 199}, "hovrel-top-edge"},
      {{21.9, 190}, "hovrel-top-left-corner"},
      {{0, 177.9}, "hovrel-left-edge"},
      {{278, 178}, "hovrel-top-right-corner"},
      {{21, 21}, "hovrel-bottom-left-corner"},
      {{22, 22}, ""},
      {{299, 21}, "hovrel-bottom-right-corner"},
      {{150, 0}, "hovrel-bottom-edge"},
      {{9.9, 100}, "hovrel-left-edge"},
      {{290, 100}, "hovrel-right-edge"},
      {{289.9, 100}, ""},
      {{150, 100}, ""},
  };
  for (const auto& c : cases) EXPECT_EQ(nameAt(overlay, c.point), c.grip) << c.point.x << ", " << c.point.y;
}

TEST(WindowChromeOverlay, gripsFollowTheWindowUnlessItIsTooSmallForThem) {
  const struct {
    const char* what;
    Size size;
    /// Where the corner at the top right then lies, and how long the edges are.
    Rect corner;
    Size topEdge, leftEdge;
  } cases[] = {
      {"as small as they fit", {45, 46}, {{23, 24}, {22, 22}}, {1, 10}, {10, 2}},
      {"too narrow", {44, 300}, {{23, 24}, {22, 22}}, {1, 10}, {10, 2}},
      {"too low", {300, 44}, {{23, 24}, {22, 22}}, {1, 10}, {10, 2}},
      {"larger again", {100, 100}, {{78, 78}, {22, 22}}, {56, 10}, {10, 56}},
  };
  HeadlessPlatform headless;
  Window window(headless.application(), {{0, 0}, {200, 200}}, style_mask::kTitled);
  window.setContentView(std::make_unique<WindowChromeOverlay>(Rect{{0, 0}, {30, 30}}));
  for (const auto& c : cases) {
    window.setFrame({{0, 0}, c.size});
    EXPECT_EQ(findView(window, "hovrel-top-right-corner")->frame(), c.corner) << c.what;
    EXPECT_EQ(findView(window, "hovrel-top-edge")->frame().size, c.topEdge) << c.what;
    EXPECT_EQ(findView(window, "hovrel-left-edge")->frame().size, c.leftEdge) << c.what;
  }
}

TEST(CornerDrag, keepsTheOppositeCornerAndTheLimits) {
  constexpr Rect kStart{{100, 200}, {400, 300}};
  constexpr Size kFree{0, 0};
  constexpr Size kWide{16, 9};
  constexpr Rect kWideStart{{100, 200}, {320, 180}};
  const struct {
    const char* what;
    CornerDrag drag;
    double dx, dy;
    Rect after;
  } cases[] = {
      {"top left", {Corner::topLeft, kStart, {}, kFree}, 30, 20, {{130, 200}, {370, 320}}},
      {"bottom right", {Corner::bottomRight, kStart, {}, kFree}, -30, 20, {{100, 220}, {370, 280}}},
      {"no minimum size", {Corner::topRight, kStart, {}, kFree}, -999, -999, {{100, 200}, {25, 25}}},
      {"a smaller minimum", {Corner::topLeft, kStart, {9, 9}, kFree}, 999, -999, {{475, 200}, {25, 25}}},
      {"a larger minimum", {Corner::bottomLeft, kStart, {60, 40}, kFree}, 999, 999, {{440, 460}, {60, 40}}},
      {"half a ratio is none", {Corner::topRight, kStart, {}, {16, 0}}, 30, 20, {{100, 200}, {430, 320}}},
      {"sideways", {Corner::bottomLeft, kWideStart, {}, kWide}, -160, 10, {{-60, 110}, {480, 270}}},
      {"upwards", {Corner::topRight, kWideStart, {}, kWide}, 10, 90, {{100, 200}, {480, 270}}},
      {"a tie", {Corner::topRight, kWideStart, {}, kWide}, 16, -9, {{100, 200}, {336, 189}}},
      {"least width", {Corner::topLeft, kWideStart, {160, 10}, kWide}, 999, 0, {{260, 200}, {160, 90}}},
      {"least height", {Corner::topRight, kWideStart, {10, 45}, kWide}, 0, -999, {{100, 200}, {80, 45}}},
      {"25 with a ratio", {Corner::bottomRight, kWideStart, {}, {1, 2}}, -999, 0, {{100, 330}, {25, 50}}},
  };
  for (const auto& c : cases) {
    const Rect after = c.drag.frameAfter(c.dx, c.dy);
    EXPECT_EQ(after, c.after) << c.what << " gave " << after.origin.x << "," << after.origin.y << " "
                              << after.size.width << "x" << after.size.height;
  }
}

TEST(WindowChromeOverlay, onlyTheFirstButtonDrags) {
  HeadlessPlatform headless;
  Window window(headless.application(), {{100, 200}, {300, 200}}, style_mask::kTitled);
  window.setContentView(std::make_unique<WindowChromeOverlay>(window.frame()));
  window.orderFrontRegardless();
  const auto cursor = [&] { return findView(window, "hovrel-bottom-edge")->cursor(); };
  for (const Point at : {Point{5, 5}, Point{150, 5}}) {
    headless.input().press(window, at, {3, 1, {}});
    headless.input().dragOnScreen(window, {500, 500});
    headless.input().release(window, at);
    EXPECT_EQ(window.frame(), (Rect{{100, 200}, {300, 200}}));
  }
  EXPECT_EQ(cursor(), Cursor::openHand);
  headless.input().press(window, {150, 5});
  EXPECT_EQ(cursor(), Cursor::closedHand);
  headless.input().release(window, {150, 5});
  EXPECT_EQ(cursor(), Cursor::openHand);
}

}  // namespace
}  // namespace velto
