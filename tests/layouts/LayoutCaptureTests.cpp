#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "layouts/LayoutCapture.h"

namespace velto {
namespace {

LayoutDisplaySnapshot display(std::string key, double x, double y, bool isMain = false) {
  return {std::move(key), "Display", {{x, y}, {1920, 1080}}, {{x, y + 40}, {1920, 1000}}, 1, isMain};
}

WindowSnapshot snapshot(std::string id, std::string url) {
  WindowSnapshot made;
  made.id = std::move(id);
  made.url = std::move(url);
  made.frame = {{100, 440}, {500, 300}};
  made.display = display("k", 0, 0, true);
  return made;
}

TEST(LayoutCaptureTests, DisplayKeys) {
  const std::vector<std::tuple<DisplayIdentity, std::string, Size, std::string>> cases = {
      {{1552, 41231, 0}, "Display A", {1512, 982}, "1552:41231:0:1512x982"},
      {{0, 0, 7}, "x", {1511.5, 982.49}, "0:0:7:1512x982"},
      {{4294967295U, 1, 1}, "", {0.5, 2.5}, "4294967295:1:1:1x3"},
      {{}, "Display A", {1920, 1080}, "name:Display A:1920x1080"},
      {{}, "", {1920, 1080}, "name:display:1920x1080"},
  };
  for (const auto& [identity, name, size, key] : cases) EXPECT_EQ(displayKey(identity, name, size), key);
}

std::vector<std::string> keysOf(const std::vector<LayoutDisplaySnapshot>& displays) {
  std::vector<std::string> keys;
  for (const auto& each : displays) keys.push_back(each.key);
  return keys;
}

TEST(LayoutCaptureTests, NumbersEqualDisplaysByPlaceAndPutsTheMainFirst) {
  using Keys = std::vector<std::string>;
  EXPECT_EQ(keysOf(numberedDisplays({})), Keys{});
  EXPECT_EQ(keysOf(numberedDisplays({display("b", 10, 0), display("a", 0, 0), display("m", 20, 0, true)})),
            (Keys{"m", "a", "b"}));
  // The main one is the second from the left; the numbers go by place all the same.
  EXPECT_EQ(keysOf(numberedDisplays({display("e", 10, 0, true), display("x", 5, 0), display("e", 0, 0)})),
            (Keys{"e#2", "e#1", "x"}));
  EXPECT_EQ(keysOf(numberedDisplays({display("e", 0, 0, true), display("x", 5, 0), display("e", 10, 0)})),
            (Keys{"e#1", "x", "e#2"}));
  // One left edge: from below.
  EXPECT_EQ(keysOf(numberedDisplays({display("e", 0, 900), display("e", 0, -5), display("f", 0, 3)})),
            (Keys{"e#1", "f", "e#2"}));
}

TEST(LayoutCaptureTests, FindsTheDisplayOfAWindow) {
  const std::vector<LayoutDisplaySnapshot> displays = {display("a", 0, 0), display("m", 5, 0, true),
                                                       display("e#1", 9, 0)};
  EXPECT_EQ(displayWithKey(displays, "a"), displays.data());
  EXPECT_EQ(displayWithKey(displays, "e"), &displays[1]) << "one of two equal displays";
  EXPECT_EQ(displayWithKey(displays, std::nullopt), &displays[1]);
  const std::vector<LayoutDisplaySnapshot> noMain = {display("a", 0, 0)};
  EXPECT_EQ(displayWithKey(noMain, "b"), noMain.data());
  EXPECT_EQ(displayWithKey({}, "b"), nullptr);
}

LayoutAnchors anchors(std::string_view marks) {
  const auto has = [&](char mark) { return marks.find(mark) != std::string_view::npos; };
  return {has('l'), has('r'), has('t'), has('b'), has('x'), has('y')};
}

TEST(LayoutCaptureTests, Anchors) {
  const std::vector<std::pair<LayoutRect, std::string_view>> cases = {
      {{8, 100, 100, 100}, "l"},    {{8.01, 100, 100, 100}, ""},   {{-8, 100, 100, 100}, "l"},
      {{-8.01, 100, 100, 100}, ""}, {{892, 100, 100, 100}, "r"},   {{908, 100, 100, 100}, "r"},
      {{100, 8, 100, 100}, "t"},    {{100, 692, 100, 100}, "b"},   {{450, 100, 100, 100}, "x"},
      {{458, 100, 100, 100}, "x"},  {{458.01, 100, 100, 100}, ""}, {{200, 350, 100, 100}, "y"},
      {{0, 0, 1000, 800}, "lrtb"},  {{0, 350, 1000, 100}, "lry"},  {{5, 5, 990, 790}, "lrtb"},
      {{450, 350, 100, 100}, "xy"},
  };
  for (const auto& [rect, marks] : cases) {
    EXPECT_EQ(anchorsOf(rect, {1000, 800}), anchors(marks)) << rect.x << " " << rect.y << " " << marks;
  }
  EXPECT_EQ(anchorsOf({0, 0, 0, 0}, {0, 800}), LayoutAnchors{});
}

TEST(LayoutCaptureTests, WindowIsMeasuredFromTheUpperLeftOfTheVisibleFrame) {
  WindowSnapshot made = snapshot("id", "http://a/");
  made.title = "A";
  made.zoom = 1.5;
  made.chromeless = made.pinned = made.noFocus = true;
  made.scroll = LayoutScroll{1, 2};
  const LayoutWindow window = layoutWindow(made, {7});
  const LayoutWindow expected{.id = "id",
                              .url = "http://a/",
                              .title = "A",
                              .displayKey = "k",
                              .rect = {100, 300, 500, 300},
                              .normalized = {100.0 / 1920, 0.3, 500.0 / 1920, 0.3},
                              .anchors = {},
                              .zoom = 1.5,
                              .chromeless = true,
                              .pinned = true,
                              .thumbnail = std::nullopt,
                              .scroll = LayoutScroll{1, 2},
                              .noFocus = true,
                              .capturedAt = {7}};
  EXPECT_EQ(window, expected);

  made.noFocus = false;
  made.display.visibleFrame.size.width = 0;
  EXPECT_EQ(layoutWindow(made, {7}).noFocus, std::nullopt);
  EXPECT_EQ(layoutWindow(made, {7}).normalized, LayoutNormalizedRect{});
}

TEST(LayoutCaptureTests, RecaptureKeepsWhatItKnowsOfAPage) {
  Layout layout;
  layout.id = "L";
  layout.name = "Name";
  layout.createdAt = layout.updatedAt = {1};
  layout.displays = {layoutDisplay(display("old", 0, 0))};
  for (const char* id : {"a1", "a2", "b"}) layout.windows.push_back(layoutWindow(snapshot(id, {id[0]}), {1}));
  layout.windows[0].thumbnail = "thumbs/a1.png";

  const Layout next = updated(layout, {snapshot("n1", "c"), snapshot("n2", "a"), snapshot("n3", "a")},
                              {display("k", 3, 4)}, {9});
  EXPECT_EQ(std::tie(next.id, next.name, next.createdAt), std::tie(layout.id, layout.name, layout.createdAt));
  EXPECT_EQ(next.updatedAt, WallTime{9});
  ASSERT_EQ(next.displays.size(), 1U);
  EXPECT_EQ(next.displays[0].visibleFrame, (LayoutRect{3, 44, 1920, 1000}));
  EXPECT_EQ(next.displays[0].frame, (LayoutSize{1920, 1080}));
  std::vector<std::pair<std::string, std::string>> kept;
  for (const auto& window : next.windows) kept.emplace_back(window.id, window.thumbnail.value_or("-"));
  EXPECT_EQ(kept, (decltype(kept){{"n1", "-"}, {"a1", "thumbs/a1.png"}, {"n3", "-"}}));
}

}  // namespace
}  // namespace velto
