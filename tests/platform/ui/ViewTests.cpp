#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/HeadlessPlatform.h"
#include "platform/ui/View.h"

namespace velto {
namespace {

View& add(View& parent, const Rect& frame, Autoresizing autoresizing = {}) {
  auto view = std::make_unique<View>(frame);
  view->autoresizing = autoresizing;
  return parent.addSubview(std::move(view));
}

TEST(ViewAutoresizing, SharesTheGrowthAmongWhatMayStretch) {
  struct Case {
    const char* name;
    Autoresizing autoresizing;
    Rect after;
  };
  // A view at (10, 20, 30, 40) in 100x200, which becomes 160x140: 60 wider, 60 lower.
  for (const Case& c : {
           Case{"nothing", {}, {{10, 20}, {30, 40}}},
           {"sides", {.width = true, .height = true}, {{10, 20}, {90, -20}}},
           {"pinned to the top right", {.minXMargin = true, .minYMargin = true}, {{70, -40}, {30, 40}}},
           {"pinned to the top left", {.maxXMargin = true, .minYMargin = true}, {{10, -40}, {30, 40}}},
           {"pinned to the bottom left", {.maxXMargin = true, .maxYMargin = true}, {{10, 20}, {30, 40}}},
           {"centred", {.minXMargin = true, .maxXMargin = true}, {{40, 20}, {30, 40}}},
           {"all of an axis", {.minXMargin = true, .width = true, .maxXMargin = true}, {{30, 20}, {50, 40}}},
       }) {
    View parent(Rect{{5, 5}, {100, 200}});
    const View& view = add(parent, {{10, 20}, {30, 40}}, c.autoresizing);
    parent.setFrame({{50, 60}, {160, 140}});
    EXPECT_EQ(view.frame(), c.after) << c.name << " gave " << view.frame().origin.x << ", "
                                     << view.frame().origin.y;
  }
}

TEST(ViewAutoresizing, ReachesAllDepthsAndIsUndoneByTheOldSize) {
  View root(Rect{{0, 0}, {100, 100}});
  View& container = add(root, root.bounds(), {.width = true, .height = true});
  const View& badge = add(container, {{72, 12}, {20, 10}}, {.minXMargin = true, .minYMargin = true});
  root.setFrame({{0, 0}, {300, 50}});
  EXPECT_EQ(badge.frame(), (Rect{{272, -38}, {20, 10}}));
  root.setFrame({{0, 0}, {100, 100}});
  EXPECT_EQ(badge.frame(), (Rect{{72, 12}, {20, 10}}));
}

class HitTesting : public testing::Test {
 protected:
  HitTesting()
      : root(Rect{{0, 0}, {100, 100}}),
        below(add(root, {{10, 10}, {50, 50}})),
        above(add(root, {{30, 30}, {50, 50}})),
        inner(add(above, {{5, 5}, {10, 10}})) {}
  View root;
  View& below;
  View& above;
  View& inner;
};

TEST_F(HitTesting, TheDeepestAndTopmostViewIsHitAndEdgesBelongToTheLowerLeft) {
  struct Case {
    Point point;
    const View* hit;
  };
  for (const Case& c : {Case{{15, 15}, &below},
                        {{40, 50}, &above},
                        {{36, 36}, &inner},
                        {{35, 35}, &inner},
                        {{45, 45}, &above},
                        {{5, 5}, &root},
                        {{59.9, 20}, &below},
                        {{60, 20}, &root},
                        {{100, 50}, nullptr},
                        {{-0.1, 50}, nullptr}}) {
    EXPECT_EQ(root.hitTest(c.point), c.hit) << c.point.x << ", " << c.point.y;
  }
}

TEST_F(HitTesting, HiddenTreesAreNotHit) {
  above.setHidden(true);
  EXPECT_EQ(root.hitTest({36, 36}), &below);
}

TEST_F(HitTesting, WhatPassesThePointerThroughStillAsksItsSubviews) {
  above.setPassesPointerThrough(true);
  EXPECT_EQ(root.hitTest({36, 36}), &inner);
  EXPECT_EQ(root.hitTest({50, 50}), &below);
  EXPECT_EQ(root.hitTest({70, 70}), &root);
}

TEST_F(HitTesting, ConvertsUpToTheContent) { EXPECT_EQ(inner.convertToContent({1, 2}), (Point{36, 37})); }

TEST(ViewTree, MovesAViewBetweenOwners) {
  View first;
  View second;
  View& view = add(first, {});
  const WeakPtr<View> weak = view;
  view.removeFromSuperview();
  EXPECT_FALSE(weak) << "nobody took it";

  View& moved = add(first, {});
  std::unique_ptr<View> owned = moved.removeFromSuperview();
  EXPECT_EQ(owned.get(), &moved);
  EXPECT_EQ(moved.superview(), nullptr);
  EXPECT_TRUE(first.subviews().empty());
  second.addSubview(std::move(owned));
  EXPECT_EQ(moved.superview(), &second);
  EXPECT_EQ(second.removeFromSuperview(), nullptr);
}

TEST(ViewTree, WeakReferencesEndWithTheWholeTree) {
  auto view = std::make_unique<View>();
  const WeakPtr<View> weak = *view;
  view->addSubview(std::make_unique<View>());
  const WeakPtr<View> inner = *view->subviews().front();
  view.reset();
  EXPECT_FALSE(weak);
  EXPECT_FALSE(inner);
}

TEST(ViewTree, FindsByType) {
  struct Badge : View {
    using View::View;
  };
  View root;
  View& branch = add(root, {});
  Badge& badge = branch.addSubview(std::make_unique<Badge>());
  EXPECT_EQ(firstSubview<Badge>(root), nullptr);
  EXPECT_EQ(firstSubview<Badge>(branch), &badge);
  EXPECT_EQ(findDescendant<Badge>(root), &badge);
}

/// Logs where it goes; builds a part of itself when it comes into a window.
class Traveller : public View {
 public:
  explicit Traveller(std::vector<std::string>& travels, bool builds = false)
      : log(travels), buildsItself(builds) {}
  void didMoveToWindow(Window* window) override {
    EXPECT_EQ(window, this->window());
    log.push_back(window == nullptr ? "out" : "in");
    if (window != nullptr && buildsItself) addSubview(std::make_unique<Traveller>(log));
  }
  std::vector<std::string>& log;
  bool buildsItself;
};

TEST(ViewInWindow, IsToldOnceWhenItComesAndGoes) {
  HeadlessPlatform headless;
  std::vector<std::string> log;
  auto content = std::make_unique<View>();
  View& root = *content;
  content->addSubview(std::make_unique<Traveller>(log));
  EXPECT_TRUE(log.empty());
  {
    Window window(headless.application(), {{0, 0}, {10, 10}}, 0);
    window.setContentView(std::move(content));
    EXPECT_EQ(log, (std::vector<std::string>{"in"}));
    Traveller& late = root.addSubview(std::make_unique<Traveller>(log));
    EXPECT_EQ(log, (std::vector<std::string>{"in", "in"}));
    EXPECT_EQ(late.window(), &window);
    late.removeFromSuperview();
    EXPECT_EQ(log, (std::vector<std::string>{"in", "in", "out"}));
    log.clear();
  }
  EXPECT_EQ(log, (std::vector<std::string>{"out"}));
}

TEST(ViewInWindow, MayBuildItselfWhenItComes) {
  HeadlessPlatform headless;
  std::vector<std::string> log;
  Window window(headless.application(), {{0, 0}, {10, 10}}, 0);
  window.setContentView(std::make_unique<Traveller>(log, true));
  EXPECT_EQ(log, (std::vector<std::string>{"in", "in"}));
}

class RecordingPeer final : public ViewPeer {
 public:
  explicit RecordingPeer(std::vector<std::string>& told) : log(told) {}
  void frameChanged() override { log.emplace_back("frame"); }
  void subviewsChanged() override { log.emplace_back("subviews"); }
  void appearanceChanged() override { log.emplace_back("appearance"); }
  void needsDisplay() override { log.emplace_back("display"); }
  std::vector<std::string>& log;
};

TEST(ViewPeerCalls, FollowEachRealChangeOnly) {
  View view(Rect{{0, 0}, {10, 10}});
  std::vector<std::string> log;
  view.setPeer(std::make_unique<RecordingPeer>(log));
  const auto expect = [&](const char* what, const std::vector<std::string>& calls, auto&& change) {
    log.clear();
    change();
    EXPECT_EQ(log, calls) << what;
  };
  expect("frame", {"frame"}, [&] { view.setFrame({{1, 0}, {10, 10}}); });
  expect("same frame", {}, [&] { view.setFrame({{1, 0}, {10, 10}}); });
  expect("hidden", {"appearance"}, [&] { view.setHidden(true); });
  expect("same hidden", {}, [&] { view.setHidden(true); });
  expect("alpha", {"appearance"}, [&] { view.setAlpha(0.5); });
  expect("same alpha", {}, [&] { view.setAlpha(0.5); });
  expect("alpha past its end", {"appearance"}, [&] { view.setAlpha(7); });
  expect("alpha at its end", {}, [&] { view.setAlpha(1); });
  expect("cursor", {"appearance"}, [&] { view.setCursor(Cursor::iBeam); });
  expect("pointer", {"appearance"}, [&] { view.setPassesPointerThrough(true); });
  expect("display", {"display"}, [&] { view.setNeedsDisplay(); });
  expect("subview", {"subviews"}, [&] { view.addSubview(std::make_unique<View>()); });
  expect("no subview", {"subviews"}, [&] { view.subviews().front()->removeFromSuperview(); });
}

TEST(ViewRendering, DrawsLaterSubviewsAboveWithAlphaAndClipsToBounds) {
  struct Filled : View {
    Filled(const Rect& frame, double grey) : View(frame), shade(grey) {}
    void draw(const Cairo::RefPtr<Cairo::Context>& context) override {
      context->set_source_rgb(shade, shade, shade);
      context->paint();
    }
    double shade;
  };
  Filled root({{0, 0}, {4, 1}}, 0);
  root.addSubview(std::make_unique<Filled>(Rect{{1, 0}, {2, 1}}, 1));
  root.addSubview(std::make_unique<Filled>(Rect{{2, 0}, {1, 1}}, 0)).setAlpha(0.5);
  root.addSubview(std::make_unique<Filled>(Rect{{3, 0}, {1, 1}}, 1)).setHidden(true);
  const auto surface = Cairo::ImageSurface::create(Cairo::FORMAT_RGB24, 4, 1);
  root.render(Cairo::Context::create(surface));
  surface->flush();
  std::vector<int> shades;
  for (int x = 0; x < 4; ++x) shades.push_back(surface->get_data()[x * 4]);
  ASSERT_EQ(shades.size(), 4U);
  EXPECT_EQ(shades[0], 0);
  EXPECT_EQ(shades[1], 255);
  EXPECT_NEAR(shades[2], 128, 1);
  EXPECT_EQ(shades[3], 0);
}

}  // namespace
}  // namespace velto
