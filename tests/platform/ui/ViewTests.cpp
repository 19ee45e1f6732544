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

TEST_F(HitTesting, HiddenTreesAreNotHitAndWhatPassesThePointerThroughAsksItsSubviews) {
  above.setPassesPointerThrough(true);
  EXPECT_EQ(root.hitTest({36, 36}), &inner);
  EXPECT_EQ(root.hitTest({50, 50}), &below);
  EXPECT_EQ(root.hitTest({70, 70}), &root);
  above.setHidden(true);
  EXPECT_EQ(root.hitTest({36, 36}), &below);
}

TEST(ViewTree, WeakReferencesEndWithTheWholeTree) {
  View first;
  View& view = add(first, {});
  const WeakPtr<View> weak = view;
  const WeakPtr<View> inner = add(view, {});
  std::unique_ptr<View> owned = view.removeFromSuperview();
  EXPECT_EQ(view.removeFromSuperview(), nullptr);
  EXPECT_TRUE(inner);
  owned.reset();
  EXPECT_FALSE(weak);
  EXPECT_FALSE(inner);
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
  using Log = std::vector<std::string>;
  HeadlessPlatform headless;
  Log log;
  auto content = std::make_unique<View>();
  View& root = *content;
  content->addSubview(std::make_unique<Traveller>(log));
  EXPECT_EQ(log, Log{});
  {
    Window window(headless.application(), {{0, 0}, {10, 10}}, 0);
    window.setContentView(std::move(content));
    EXPECT_EQ(std::exchange(log, {}), Log{"in"});
    Traveller& late = root.addSubview(std::make_unique<Traveller>(log, true));
    EXPECT_EQ(std::exchange(log, {}), (Log{"in", "in"}));
    late.removeFromSuperview();
    EXPECT_EQ(std::exchange(log, {}), (Log{"out", "out"}));
  }
  EXPECT_EQ(log, Log{"out"});
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
