#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ui/PointerTracker.h"

namespace velto {
namespace {

using Log = std::vector<std::string>;

class Probe : public View {
 public:
  Probe(const Rect& frame, std::string name, Log& events)
      : View(frame), name_(std::move(name)), log_(events) {}
  void mouseEntered(const MouseEvent& event) override { note("+", event); }
  void mouseExited(const MouseEvent& event) override { note("-", event); }
  std::function<void()> onEvent;

 private:
  void note(const std::string& what, const MouseEvent& event) {
    log_.push_back(what + name_ + " " + std::to_string(static_cast<int>(event.location.x)));
    // It may be gone after this.
    if (const auto act = onEvent) act();
  }
  std::string name_;
  Log& log_;
};

/// A page with dots in its corner, whose tracking area is larger than they are, and a cover over all.
class PointerTrackerTest : public testing::Test {
 protected:
  PointerTrackerTest() {
    dots.setTrackingMargin(4);
    cover.setPassesPointerThrough(true);
  }
  static Probe& add(View& parent, const Rect& frame, const char* name, Log& log) {
    return parent.addSubview(std::make_unique<Probe>(frame, name, log));
  }
  Log moveTo(Point point) {
    tracker->moved(*root, {.location = point, .screenLocation = {}, .modifiers = {}});
    return std::exchange(log, {});
  }
  Log leave() {
    tracker->left();
    return std::exchange(log, {});
  }

  Log log;
  std::unique_ptr<Probe> root = std::make_unique<Probe>(Rect{{0, 0}, {100, 100}}, "root", log);
  Probe& page = add(*root, {{0, 0}, {100, 60}}, "page", log);
  Probe& dots = add(*root, {{10, 40}, {20, 10}}, "dots", log);
  Probe& dot = add(dots, {{5, 0}, {10, 10}}, "dot", log);
  Probe& cover = add(*root, {{0, 0}, {100, 100}}, "cover", log);
  std::unique_ptr<PointerTracker> tracker = std::make_unique<PointerTracker>();
};

TEST_F(PointerTrackerTest, TellsWhatThePointerIsIn) {
  const struct {
    const char* where;
    Point point;
    Log told;
  } steps[] = {{"above the page", {50, 80}, {"+root 50"}},
               {"on the page", {50, 50}, {"+page 50"}},
               {"a unit from the margin", {34, 45}, {}},
               {"in the margin, over the page", {33, 45}, {"+dots 23"}},
               {"on the dots beside the dot", {12, 45}, {"-page 12"}},
               {"on the dot", {16, 45}, {"+dot 1"}},
               {"in the margin below them", {16, 36}, {"-dot 1", "+page 16"}},
               {"outside of the window", {16, -1}, {"-page 16", "-dots 6", "-root 16"}},
               {"at the edge that is not part of it", {100, 20}, {}}};
  for (const auto& step : steps) EXPECT_EQ(moveTo(step.point), step.told) << step.where;
}

TEST_F(PointerTrackerTest, MarginsCountBelowOtherViewsButNotInHiddenOnes) {
  cover.setPassesPointerThrough(false);
  EXPECT_EQ(moveTo({16, 45}), (Log{"+root 16", "+dots 6", "+cover 16"})) << "the dot has no margin";
  dots.setHidden(true);
  EXPECT_EQ(moveTo({16, 45}), Log{"-dots 6"});
  dots.setHidden(false);
  root->setHidden(true);
  EXPECT_EQ(moveTo({16, 45}), (Log{"-cover 16", "-root 16"}));
}

TEST_F(PointerTrackerTest, AnotherContentIsAnotherWindow) {
  moveTo({50, 50});
  Probe other({{0, 0}, {10, 10}}, "other", log);
  tracker->moved(other, {.location = {5, 5}, .screenLocation = {}, .modifiers = {}});
  EXPECT_EQ(leave(), (Log{"-page 5", "-root 5", "+other 5", "-other 0"}));
  EXPECT_EQ(leave(), Log{});
}

TEST_F(PointerTrackerTest, SurvivesWhatItsViewsDo) {
  page.onEvent = [&] { page.removeFromSuperview(); };
  EXPECT_EQ(moveTo({50, 50}), (Log{"+root 50", "+page 50"}));
  EXPECT_EQ(moveTo({50, 51}), Log{}) << "what is gone is not told";

  root->onEvent = [&] { tracker->left(); };
  leave();
  EXPECT_EQ(moveTo({12, 45}), (Log{"+root 12", "-root 0"})) << "an answer took the pointer away";

  root->onEvent = [&] {
    tracker.reset();
    root.reset();
  };
  PointerTracker& last = *tracker;
  last.moved(*root, {.location = {12, 45}, .screenLocation = {}, .modifiers = {}});
  EXPECT_EQ(log, Log{"+root 12"});
}

}  // namespace
}  // namespace velto
