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
      {{150, 195}, "hovrel-top-edge"},
      {{150, 185}, ""},
      {{22, 199}, "hovrel-top-edge"},
      {{21.9, 190}, "hovrel-top-left-corner"},
      {{0, 178}, "hovrel-top-left-corner"},
      {{0, 177.9}, "hovrel-left-edge"},
      {{278, 178}, "hovrel-top-right-corner"},
      {{277.9, 190}, "hovrel-top-edge"},
      {{0, 0}, "hovrel-bottom-left-corner"},
      {{21, 21}, "hovrel-bottom-left-corner"},
      {{22, 22}, ""},
      {{278, 0}, "hovrel-bottom-right-corner"},
      {{299, 21}, "hovrel-bottom-right-corner"},
      {{150, 0}, "hovrel-bottom-edge"},
      {{150, 10}, ""},
      {{9.9, 100}, "hovrel-left-edge"},
      {{10, 100}, ""},
      {{290, 100}, "hovrel-right-edge"},
      {{289.9, 100}, ""},
      {{300, 100}, ""},
      {{-1, 100}, ""},
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
      {"larger", {400, 500}, {{378, 478}, {22, 22}}, {356, 10}, {10, 456}},
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
      {"top right", {Corner::topRight, kStart, {}, kFree}, 30, 20, {{100, 200}, {430, 320}}},
      {"top left", {Corner::topLeft, kStart, {}, kFree}, 30, 20, {{130, 200}, {370, 320}}},
      {"bottom left", {Corner::bottomLeft, kStart, {}, kFree}, -30, -20, {{70, 180}, {430, 320}}},
      {"bottom right", {Corner::bottomRight, kStart, {}, kFree}, -30, 20, {{100, 220}, {370, 280}}},
      {"no minimum size", {Corner::topRight, kStart, {}, kFree}, -999, -999, {{100, 200}, {25, 25}}},
      {"a smaller minimum", {Corner::topLeft, kStart, {9, 9}, kFree}, 999, -999, {{475, 200}, {25, 25}}},
      {"a larger minimum", {Corner::bottomLeft, kStart, {60, 40}, kFree}, 999, 999, {{440, 460}, {60, 40}}},
      {"half a ratio is none", {Corner::topRight, kStart, {}, {16, 0}}, 30, 20, {{100, 200}, {430, 320}}},
      {"sideways the width leads",
       {Corner::topRight, kWideStart, {}, kWide},
       160,
       10,
       {{100, 200}, {480, 270}}},
      {"upwards the height leads",
       {Corner::topRight, kWideStart, {}, kWide},
       10,
       90,
       {{100, 200}, {480, 270}}},
      {"on a tie the width leads",
       {Corner::topRight, kWideStart, {}, kWide},
       16,
       -9,
       {{100, 200}, {336, 189}}},
      {"from the lower left", {Corner::bottomLeft, kWideStart, {}, kWide}, -160, 0, {{-60, 110}, {480, 270}}},
      {"least width with a ratio",
       {Corner::topLeft, kWideStart, {160, 10}, kWide},
       999,
       0,
       {{260, 200}, {160, 90}}},
      {"least height with a ratio",
       {Corner::topRight, kWideStart, {10, 45}, kWide},
       0,
       -999,
       {{100, 200}, {80, 45}}},
      {"25 with a ratio", {Corner::bottomRight, kWideStart, {}, {1, 2}}, -999, 0, {{100, 330}, {25, 50}}},
  };
  for (const auto& c : cases) {
    const Rect after = c.drag.frameAfter(c.dx, c.dy);
    EXPECT_EQ(after, c.after) << c.what << " gave " << after.origin.x << "," << after.origin.y << " "
                              << after.size.width << "x" << after.size.height;
  }
}

class DraggedWindow : public testing::Test {
 protected:
  DraggedWindow() {
    window.setMovableByBackground(true);
    window.setContentView(std::make_unique<WindowChromeOverlay>(window.frame()));
    window.orderFrontRegardless();
  }
  [[nodiscard]] Cursor cursorOf(const char* grip) const { return findView(window, grip)->cursor(); }

  HeadlessPlatform headless;
  HeadlessInput& input = headless.input();
  Window window{headless.application(), {{100, 200}, {300, 200}}, style_mask::kTitled};
};

TEST_F(DraggedWindow, anEdgeMovesTheWindowWithThePointer) {
  for (const char* edge :
       {"hovrel-top-edge", "hovrel-bottom-edge", "hovrel-left-edge", "hovrel-right-edge"}) {
    window.setFrameOrigin({100, 200});
    const Rect grip = findView(window, edge)->frame();
    const Point at{grip.midX(), grip.midY()};
    EXPECT_EQ(cursorOf(edge), Cursor::openHand) << edge;
    input.press(window, at);
    EXPECT_EQ(cursorOf(edge), Cursor::closedHand) << edge;
    // Each step is counted from the start, so that nothing adds up while the window moves below the pointer.
    input.dragOnScreen(window, {100 + at.x + 40, 200 + at.y - 30});
    EXPECT_EQ(window.frame(), (Rect{{140, 170}, {300, 200}})) << edge;
    input.dragOnScreen(window, {100 + at.x - 5, 200 + at.y + 7});
    EXPECT_EQ(window.frame(), (Rect{{95, 207}, {300, 200}})) << edge;
    input.release(window, at);
    EXPECT_EQ(cursorOf(edge), Cursor::openHand) << edge;
  }
}

TEST_F(DraggedWindow, aCornerResizesItWithTheWindowsOwnLimits) {
  window.setMinSize({120, 80});
  window.setContentAspectRatio({3, 2});
  input.press(window, {295, 195});
  input.dragOnScreen(window, {395 + 150, 395 + 1});
  EXPECT_EQ(window.frame(), (Rect{{100, 200}, {450, 300}}));
  input.dragOnScreen(window, {-999, -999});
  EXPECT_EQ(window.frame(), (Rect{{100, 200}, {120, 80}}));
  EXPECT_EQ(cursorOf("hovrel-top-right-corner"), Cursor::resizeNorthEastSouthWest);
  EXPECT_EQ(cursorOf("hovrel-bottom-left-corner"), Cursor::resizeNorthEastSouthWest);
  EXPECT_EQ(cursorOf("hovrel-top-left-corner"), Cursor::resizeNorthWestSouthEast);
  EXPECT_EQ(cursorOf("hovrel-bottom-right-corner"), Cursor::resizeNorthWestSouthEast);
}

TEST_F(DraggedWindow, otherButtonsDragNothing) {
  for (const Point at : {Point{5, 5}, Point{150, 5}}) {
    input.press(window, at, {3, 1, {}});
    input.dragOnScreen(window, {500, 500});
    input.release(window, at);
    EXPECT_EQ(window.frame(), (Rect{{100, 200}, {300, 200}}));
  }
  EXPECT_EQ(cursorOf("hovrel-bottom-edge"), Cursor::openHand);
}

}  // namespace
}  // namespace velto
