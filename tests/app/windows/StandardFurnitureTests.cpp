#include <memory>

#include <gtest/gtest.h>

#include "app/windows/StandardFurniture.h"
#include "platform/headless/HeadlessPlatform.h"

namespace velto {
namespace {

TEST(StandardFurniture, liesOverTheWindowAndFollowsItsSize) {
  HeadlessPlatform headless;
  HovrelPanel panel(headless.application(), {{100, 100}, {400, 300}}, style_mask::kTitled);
  StandardFurniture furniture(headless.loop(), headless.loop(), headless.windowSystem());
  panel.setContentView(std::make_unique<View>());
  View& container = *panel.contentView();
  furniture.showZoom(container, 1);  // nothing to show it in yet
  furniture.addChrome(panel, container);
  EXPECT_EQ(furniture.addControlBar(panel, container, headless.defaults()), nullptr);
  furniture.addZoomIndicator(container);
  panel.orderFrontRegardless();

  const struct {
    Size window;
    Rect chrome, lights, badge;
  } cases[] = {
      {{400, 300}, {{0, 0}, {400, 300}}, {{12, 280}, {58, 12}}, {{328, 12}, {60, 28}}},
      {{640, 200}, {{0, 0}, {640, 200}}, {{12, 180}, {58, 12}}, {{568, 12}, {60, 28}}},
  };
  for (const auto& c : cases) {
    panel.setFrame({{100, 100}, c.window});
    EXPECT_EQ(findView(panel, "hovrel-window-chrome")->frame(), c.chrome);
    EXPECT_EQ(findView(panel, "hovrel-traffic-lights")->frame(), c.lights);
    EXPECT_EQ(findView(panel, "hovrel-zoom-indicator")->frame(), c.badge);
  }
  EXPECT_EQ(container.hitTest({600, 26}), &container) << "the badge is not there yet";
  furniture.showZoom(container, 1.5);
  headless.advance(0.5);
  EXPECT_EQ(container.hitTest({600, 26}), findView(panel, "hovrel-zoom-indicator"));

  headless.input().press(panel, {15, 186});
  EXPECT_TRUE(panel.isClosed()) << "the dots lie above the corner and act on this window";
}

}  // namespace
}  // namespace velto
