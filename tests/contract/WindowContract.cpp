#include "tests/contract/WindowContract.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velto {

void PrintTo(const Rect& rect, std::ostream* out) {
  *out << rect.origin.x << "," << rect.origin.y << " " << rect.size.width << "x" << rect.size.height;
}

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using test::RecordingWindow;
using test::WindowContract;

TEST_F(WindowContract, WindowIsWhereItWasAskedToBeAndStaysThere) {
  const auto area = application().mainScreen()->visibleFrame;
  const Rect frames[] = {{{0, 0}, {420, 560}},
                         {{area.minX() + 37, area.minY() + 41}, {333, 222}},
                         {{10, 10}, {25, 25}},
                         {{area.minX(), area.maxY() - 300}, {400, 300}},
                         {{area.maxX() - 400, area.minY()}, {400, 300}}};
  for (const Rect& frame : frames) {
    auto window = make(frame);
    window->makeKeyAndOrderFront();
    settle();
    EXPECT_EQ(window->frame(), frame);
    EXPECT_THAT(window->log, ElementsAre("key"));
    EXPECT_EQ(window->screen()->frame.origin, (Point{0, 0}));
  }
}

TEST_F(WindowContract, FrameChangesAreToldByKind) {
  auto window = makeKey({{100, 100}, {300, 200}});
  const struct {
    Rect frame;
    std::vector<std::string> told;
  } steps[] = {{{{100, 100}, {300, 200}}, {}},
               {{{150, 120}, {300, 200}}, {"moved"}},
               {{{150, 120}, {310, 220}}, {"resized"}},
               {{{90, 80}, {200, 210}}, {"moved", "resized"}}};
  for (const auto& step : steps) {
    window->log.clear();
    window->setFrame(step.frame);
    settle();
    EXPECT_EQ(window->frame(), step.frame);
    EXPECT_EQ(window->log, step.told);
  }
}

TEST_F(WindowContract, QuickFramesEndInTheLastOne) {
  auto window = makeKey({{100, 100}, {300, 200}});
  for (int i = 1; i <= 50; ++i) {
    window->setFrame({{100.0 + 3 * i, 100.0 + 2 * i}, {300.0 + i, 200.0 + i}});
    contract.letPass(0.005);
  }
  Rect last{{250, 200}, {350, 250}};
  EXPECT_EQ(window->frame(), last);
  settle();
  EXPECT_EQ(window->frame(), last);
  EXPECT_EQ(window->log.size(), 100U);
  for (int i = 0; i < 3000; ++i) {
    last.origin.x = 100 + i % 70;
    window->setFrame(last);
  }
  settle();
  EXPECT_EQ(window->frame(), last);
}

TEST_F(WindowContract, FractionsOfAUnitAreKept) {
  auto window = makeKey({{100, 100}, {300, 200}});
  for (const Rect& frame : {Rect{{100, 100.75}, {300, 168.75}}, Rect{{100.5, 99.5}, {299.5, 168.46875}},
                            Rect{{100.25, 100}, {533.3333333, 300}}}) {
    window->setFrame(frame);
    settle();
    EXPECT_EQ(window->frame(), frame);
  }
}

TEST_F(WindowContract, MinimumSizeHolds) {
  auto window = makeKey({{100, 100}, {300, 200}});
  window->setMinSize({320, 180});
  EXPECT_EQ(window->frame().size, (Size{320, 200}));
  window->setFrame({{100, 100}, {10, 10}});
  settle();
  EXPECT_EQ(window->frame().size, (Size{320, 180}));
}

TEST_F(WindowContract, ContentFollowsTheWindow) {
  auto window = make({{100, 100}, {300, 200}});
  window->setContentView(std::make_unique<View>());
  EXPECT_EQ(window->contentView()->frame(), (Rect{{0, 0}, {300, 200}}));
  window->makeKeyAndOrderFront();
  window->setFrame({{100, 100}, {400, 500}});
  settle();
  EXPECT_EQ(window->contentView()->frame(), (Rect{{0, 0}, {400, 500}}));
}

TEST_F(WindowContract, ViewsComeAndGoWhileTheWindowIsShown) {
  auto from = makeKey({{100, 100}, {300, 200}});
  auto to = makeKey({{500, 100}, {300, 200}});
  from->setContentView(std::make_unique<View>());
  to->setContentView(std::make_unique<View>());
  auto& view = from->contentView()->addSubview(std::make_unique<View>(Rect{{10, 10}, {50, 50}}));
  auto& inner = view.addSubview(std::make_unique<View>(Rect{{5, 5}, {0, 0}}));
  settle();
  to->contentView()->addSubview(view.removeFromSuperview());
  view.setHidden(true);
  inner.setFrame({{0, 0}, {20, 20}});
  settle();
  view.setHidden(false);
  view.setAlpha(0.5);
  EXPECT_EQ(inner.window(), to.get());
  to->setContentView(std::make_unique<View>());
  settle();
}

TEST_F(WindowContract, ClosingAsksTheDelegateFirst) {
  auto window = makeKey({{100, 100}, {300, 200}});
  window->mayClose = false;
  window->close();
  EXPECT_TRUE(window->isVisible());
  EXPECT_FALSE(window->isClosed());
  window->mayClose = true;
  window->close();
  window->close();
  EXPECT_FALSE(window->isVisible());
  EXPECT_TRUE(window->isClosed());
  EXPECT_THAT(application().windows(), IsEmpty());
  EXPECT_THAT(window->log, ElementsAre("should close", "should close", "will close"));
  window->makeKeyAndOrderFront();
  settle();
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(application().keyWindow(), nullptr);
}

TEST_F(WindowContract, KeyWindowFollowsTheKeyboard) {
  auto first = makeKey({{100, 100}, {300, 200}});
  auto second = makeKey({{500, 100}, {300, 200}});
  EXPECT_FALSE(first->isKey());
  second->close();
  EXPECT_FALSE(second->isKey());
  EXPECT_TRUE(contract.runUntil([&] { return first->isKey(); }));
  EXPECT_THAT(first->log, ElementsAre("key"));
}

TEST_F(WindowContract, ShowingWithoutTheKeyboardLeavesItWhereItIs) {
  auto holder = makeKey({{100, 100}, {300, 200}});
  auto background = make({{120, 120}, {300, 200}});
  auto panel = make({{140, 140}, {300, 200}}, test::kStyle | style_mask::kNonactivatingPanel);
  background->orderFrontRegardless();
  panel->orderFrontRegardless();
  settle();
  background->orderOut();
  settle();
  background->orderFrontRegardless();
  settle();
  EXPECT_TRUE(holder->isKey());
  EXPECT_TRUE(background->isVisible());
  EXPECT_TRUE(panel->isVisible());
  EXPECT_THAT(holder->log, IsEmpty());
}

TEST_F(WindowContract, WindowComesBackWhereItWas) {
  auto window = makeKey({{150, 90}, {300, 200}});
  window->orderOut();
  settle();
  window->setFrame({{200, 110}, {280, 190}});
  window->log.clear();
  window->makeKeyAndOrderFront();
  settle();
  EXPECT_EQ(window->frame(), (Rect{{200, 110}, {280, 190}}));
  EXPECT_THAT(window->log, ElementsAre("key"));
}

TEST_F(WindowContract, FloatingLevelIsReadBackFromTheDesktop) {
  auto window = makeKey({{100, 100}, {300, 200}});
  EXPECT_EQ(window->grantedLevel(), kNormalWindowLevel);
  window->setLevel(kFloatingWindowLevel);
  EXPECT_TRUE(contract.runUntil([&] { return window->grantedLevel() == kFloatingWindowLevel; }));
  window->setLevel(kNormalWindowLevel);
  EXPECT_TRUE(contract.runUntil([&] { return window->grantedLevel() == kNormalWindowLevel; }));

  auto pinnedFirst = make();
  pinnedFirst->setLevel(kFloatingWindowLevel);
  pinnedFirst->orderFrontRegardless();
  EXPECT_TRUE(contract.runUntil([&] { return pinnedFirst->grantedLevel() == kFloatingWindowLevel; }));
}

TEST_F(WindowContract, MiniaturizedWindowGivesUpTheKeyboardUntilItIsBack) {
  auto window = makeKey({{100, 100}, {300, 200}});
  window->miniaturize();
  settle();
  EXPECT_TRUE(window->isMiniaturized());
  EXPECT_FALSE(window->isKey());
  window->deminiaturize();
  window->makeKeyAndOrderFront();
  EXPECT_TRUE(contract.runUntil([&] { return window->isKey(); }));
  settle();
  EXPECT_FALSE(window->isMiniaturized());
  EXPECT_EQ(window->frame(), (Rect{{100, 100}, {300, 200}}));
}

/// Writes down when the pointer comes and goes.
class Entered final : public View {
 public:
  Entered(const Rect& frame, std::vector<std::string>& log) : View(frame), log_(log) {}
  void mouseEntered(const MouseEvent&) override { log_.emplace_back("in"); }
  void mouseExited(const MouseEvent&) override { log_.emplace_back("out"); }

 private:
  std::vector<std::string>& log_;
};

TEST_F(WindowContract, ViewsFollowThePointerBelowOthersAndUntilTheWindowGoes) {
  auto other = makeKey({{500, 100}, {300, 200}});
  auto window = makeKey({{100, 100}, {300, 200}});
  std::vector<std::string> log;
  window->setContentView(std::make_unique<View>());
  auto& lights = window->contentView()->addSubview(std::make_unique<Entered>(Rect{{20, 150}, {40, 12}}, log));
  lights.setTrackingMargin(4);
  window->contentView()->addSubview(std::make_unique<View>(Rect{{0, 0}, {300, 200}}));
  settle();
  const auto leaveBy = [&](const char* how, const std::function<void()>& leave) {
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(contract.runUntil([&] { return window->isKey(); }));
    settle();
    contract.movePointer(*window, {100, 100});
    settle();
    log.clear();
    contract.movePointer(*window, {17, 155});
    EXPECT_TRUE(contract.runUntil([&] { return !log.empty(); })) << how;
    leave();
    settle();
    EXPECT_THAT(log, ElementsAre("in", "out")) << how;
  };
  leaveBy("moving on", [&] { contract.movePointer(*window, {15, 155}); });
  leaveBy("another window", [&] { contract.movePointer(*other, {10, 10}); });
  leaveBy("putting away", [&] { window->miniaturize(); });
  leaveBy("hiding", [&] { window->orderOut(); });
  leaveBy("closing", [&] { window->close(); });
}

/// Writes down what it is pressed with.
class Pressed final : public View {
 public:
  explicit Pressed(std::vector<std::string>& log) : log_(log) {}
  bool mouseDown(const MouseEvent& event) override { return note("down", event); }
  bool mouseUp(const MouseEvent& event) override {
    return note(bounds().contains(event.location) ? "up" : "lost", event);
  }

 private:
  bool note(const std::string& what, const MouseEvent& event) {
    log_.push_back(what + " " + std::to_string(event.button));
    return true;
  }
  std::vector<std::string>& log_;
};

TEST_F(WindowContract, APressIsOneButtonsAndEndsForItsView) {
  auto other = makeKey({{500, 100}, {300, 200}});
  auto window = makeKey({{100, 100}, {300, 200}});
  contract.movePointer(*other, {10, 10});
  std::vector<std::string> log;
  window->setContentView(std::make_unique<Pressed>(log));
  const auto pressAnd = [&](const std::function<void()>& finish) {
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(contract.runUntil([&] { return window->isKey(); }));
    settle();
    contract.press(*window, {10, 10}, 1);
    contract.press(*window, {10, 10}, 3);
    finish();
    settle();
    return std::exchange(log, {});
  };
  EXPECT_THAT(pressAnd([&] { contract.release(*window, {10, 10}, 1); }), ElementsAre("down 1", "up 1"));
  EXPECT_THAT(pressAnd([&] { window->miniaturize(); }), ElementsAre("down 1", "lost 1"));
  EXPECT_THAT(pressAnd([&] { window->orderOut(); }), ElementsAre("down 1", "lost 1"));
  EXPECT_THAT(pressAnd([&] {
                contract.press(*window, {10, 10}, 1);
              }),
              ElementsAre("down 1", "lost 1", "down 1"));
  window->close();
  EXPECT_THAT(log, testing::IsEmpty());
}

}  // namespace
}  // namespace velto
