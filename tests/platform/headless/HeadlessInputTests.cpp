#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/HeadlessInput.h"
#include "platform/headless/HeadlessPlatform.h"

namespace velto {
namespace {

using Log = std::vector<std::string>;

std::string at(Point p) { return std::to_string(int(p.x)) + "," + std::to_string(int(p.y)); }

/// Logs its events under its identifier; uses presses and moves when told to.
class Probe : public View {
 public:
  Probe(const Rect& frame, const std::string& name, Log& events) : View(frame), log(events) {
    setIdentifier(name);
  }
  bool mouseDown(const MouseEvent& e) override {
    note("down " + std::to_string(e.button) + "x" + std::to_string(e.clickCount), e);
    // It may be gone after this.
    const bool used = uses;
    if (const auto act = onDown) act();
    return used;
  }
  bool mouseDragged(const MouseEvent& e) override { return note("drag", e); }
  bool mouseUp(const MouseEvent& e) override { return note("up", e); }
  bool mouseMoved(const MouseEvent& e) override { return note("move", e); }
  void mouseEntered(const MouseEvent&) override { log.push_back(identifier() + " entered"); }
  void mouseExited(const MouseEvent&) override { log.push_back(identifier() + " exited"); }
  bool note(const std::string& what, const MouseEvent& e) {
    log.push_back(identifier() + " " + what + " " + at(e.location) + " screen " + at(e.screenLocation));
    return uses;
  }
  bool uses = false;
  std::function<void()> onDown;
  Log& log;
};

class KeyWindow final : public Window {
 public:
  using Window::Window;
  bool keyDown(const KeyEvent& e) override {
    log.push_back("down " + e.characters);
    return e.key == Key::escape;
  }
  bool performKeyEquivalent(const KeyEvent& e) override {
    log.push_back("equivalent " + e.characters);
    return e.characters == "l";
  }
  Log log;
};

class HeadlessInputTest : public testing::Test {
 protected:
  HeadlessInputTest() {
    auto content = std::make_unique<Probe>(Rect{}, "root", log);
    root = content.get();
    window.setContentView(std::move(content));
    outer = &root->addSubview(std::make_unique<Probe>(Rect{{10, 10}, {50, 50}}, "outer", log));
    inner = &outer->addSubview(std::make_unique<Probe>(Rect{{5, 5}, {10, 10}}, "inner", log));
    window.orderFrontRegardless();
  }
  Log take() { return std::exchange(log, {}); }

  HeadlessPlatform headless;
  HeadlessInput& input = headless.input();
  Log log;
  KeyWindow window{headless.application(), {{100, 200}, {100, 100}}, style_mask::kTitled};
  Probe* root = nullptr;
  Probe* outer = nullptr;
  Probe* inner = nullptr;
};

TEST_F(HeadlessInputTest, EntersOutermostFirstAndLeavesInnermostFirst) {
  input.moveMouse(window, {17, 17});
  EXPECT_EQ(take(), (Log{"root entered", "outer entered", "inner entered", "inner move 2,2 screen 117,217",
                         "outer move 7,7 screen 117,217", "root move 17,17 screen 117,217"}));
  outer->uses = true;
  input.moveMouse(window, {50, 50});
  EXPECT_EQ(take(), (Log{"inner exited", "outer move 40,40 screen 150,250"}));
  input.moveMouseAway();
  EXPECT_EQ(take(), (Log{"outer exited", "root exited"}));
}

TEST_F(HeadlessInputTest, APressBubblesAndItsUserGetsDragAndRelease) {
  outer->uses = true;
  input.moveMouse(window, {17, 17});
  take();
  input.press(window, {17, 17}, {1, 2, {}});
  EXPECT_EQ(Log(log.end() - 2, log.end()),
            (Log{"inner down 1x2 2,2 screen 117,217", "outer down 1x2 7,7 screen 117,217"}));
  EXPECT_TRUE(window.isKey());
  take();
  input.drag(window, {99, 5});
  window.setFrameOrigin({0, 0});
  input.dragOnScreen(window, {120, 30});
  input.release(window, {1, 1});
  input.drag(window, {2, 2});
  EXPECT_EQ(take(), (Log{"outer drag 89,-5 screen 199,205", "outer drag 110,20 screen 120,30",
                         "outer up -9,-9 screen 1,1", "inner exited", "outer exited"}));
}

TEST_F(HeadlessInputTest, ThePointerIsInNoWindowThatLeavesTheScreen) {
  for (const std::string how : {"order out", "put away", "close"}) {
    input.moveMouse(window, {50, 50});
    take();
    if (how == "order out") window.orderOut();
    if (how == "put away") window.miniaturize();
    if (how == "close") window.close();
    EXPECT_EQ(take(), (Log{"outer exited", "root exited"})) << how;
    window.makeKeyAndOrderFront();
  }
}

TEST_F(HeadlessInputTest, AnUnusedPressMovesAWindowThatIsMovableByItsBackground) {
  for (const bool movable : {false, true}) {
    window.setFrameOrigin({100, 200});
    window.setMovableByBackground(movable);
    input.press(window, {50, 50});
    input.dragOnScreen(window, {160, 240});
    input.dragOnScreen(window, {170, 230});
    input.release(window, {50, 50});
    EXPECT_EQ(window.frame().origin, movable ? (Point{120, 180}) : (Point{100, 200}));
  }
}

TEST_F(HeadlessInputTest, SurvivesWhatAPressDestroys) {
  inner->uses = true;
  inner->onDown = [&] { inner->removeFromSuperview(); };
  input.click(window, "inner");
  input.moveMouse(window, {17, 17});
  EXPECT_EQ(log.back(), "root move 17,17 screen 117,217");
  auto other =
      std::make_unique<KeyWindow>(headless.application(), Rect{{0, 0}, {50, 50}}, style_mask::kTitled);
  auto content = std::make_unique<Probe>(Rect{}, "content", log);
  content->onDown = [&] { other.reset(); };
  other->setContentView(std::move(content));
  other->orderFrontRegardless();
  input.click(*other, {5, 5});
  EXPECT_EQ(other, nullptr);
  input.moveMouseAway();
}

TEST_F(HeadlessInputTest, ViewsAreFoundByTheirIdentifier) {
  EXPECT_EQ(findView(window, "inner"), inner);
  EXPECT_EQ(findView(window, "root"), root);
  EXPECT_EQ(findView(window, "nobody"), nullptr);
  EXPECT_THROW(input.click(window, "nobody"), std::logic_error);
  window.orderOut();
  EXPECT_THROW(input.moveMouse(window, {1, 1}), std::logic_error);
}

TEST_F(HeadlessInputTest, KeysGoFromTheWindowToItsPage) {
  root->addSubview(headless.webEngine().makeWebView({{60, 60}, {40, 40}}, {}));
  const HeadlessWebView& page = *headless.webEngine().webViews().front();
  EXPECT_THROW(input.key(window, {}), std::logic_error) << "without the keyboard";
  input.click(window, {80, 80});
  EXPECT_FALSE(log.back().find("root down") != std::string::npos) << "the page takes what is pressed on it";
  struct Case {
    KeyEvent event;
    Log windowSaw;
    bool pageGot;
  };
  for (const Case& c : {
           Case{{Key::character, "a", {}, {}}, {"down a"}, true},
           {{Key::character, "b", {.shift = true}, {}}, {"down b"}, true},
           {{Key::escape, "", {}, {}}, {"down "}, false},
           {{Key::character, "l", {.control = true}, {}}, {"equivalent l"}, false},
           {{Key::character, "k", {.command = true}, {}}, {"equivalent k", "down k"}, true},
       }) {
    window.log.clear();
    const std::size_t before = page.keysReceived().size();
    headless.advance(1);
    input.key(window, c.event);
    EXPECT_EQ(window.log, c.windowSaw);
    EXPECT_EQ(page.keysReceived().size() - before, c.pageGot ? 1U : 0U) << c.event.characters;
    EXPECT_TRUE(!c.pageGot || page.keysReceived().back().time == headless.loop().uptime());
  }
}

}  // namespace
}  // namespace velto
