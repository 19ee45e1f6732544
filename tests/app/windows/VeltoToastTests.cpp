#include <memory>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "app/windows/VeltoToast.h"
#include "platform/headless/HeadlessPlatform.h"

namespace velto {
namespace {

class ToastTest : public testing::Test {
 protected:
  [[nodiscard]] Window* panel() {
    for (Window* window : headless.application().windows()) {
      if (window->identifier() == "velto-toast") return window;
    }
    return nullptr;
  }
  [[nodiscard]] Label& label() { return *findDescendant<Label>(*panel()->contentView()); }

  HeadlessPlatform headless;
  VeltoToast toast{headless.application(), headless.loop(), headless.loop()};
};

TEST_F(ToastTest, fitsItsTextWithinLimits) {
  const struct {
    std::string text;
    double least, most;
  } cases[] = {{"Saved", 160, 160},
               {"Layout saved as a name of some length", 200, 519},
               {std::string(4000, 'w'), 520, 520}};
  for (const auto& c : cases) {
    toast.show(c.text);
    const double width = panel()->frame().size.width;
    EXPECT_GE(width, c.least) << c.text.substr(0, 50);
    EXPECT_LE(width, c.most) << c.text.substr(0, 50);
    EXPECT_EQ(label().frame(), (Rect{{20, 0}, {width - 40, 40}}));
  }
}

TEST_F(ToastTest, showsOnTheScreenOfTheWindowConcerned) {
  Screen left = HeadlessWindowSystem::defaultScreen();
  Screen right = left;
  right.number = 2;
  right.frame = {{1920, 0}, {1000, 800}};
  right.visibleFrame = {{1920, 30}, {1000, 770}};
  headless.windowSystem().setScreens({left, right});
  Window onRight(headless.application(), {{2000, 10}, {100, 100}}, style_mask::kTitled);
  onRight.orderFrontRegardless();

  const auto originFor = [this](const Window* window) {
    toast.show("Saved", window);
    return panel()->frame().origin;
  };
  const Point overLeft{960 - 80, 1053 - 88};
  const Point overRight{2420 - 80, 800 - 88};
  EXPECT_EQ(originFor(nullptr), overLeft) << "the main screen";
  EXPECT_EQ(originFor(&onRight), overRight);
  headless.windowSystem().focus(&onRight);
  EXPECT_EQ(originFor(nullptr), overRight) << "the key window's";
  headless.windowSystem().setScreens({});
  EXPECT_EQ(originFor(&onRight), (Point{720 - 80, 900 - 88})) << "no screens";
}

TEST_F(ToastTest, comesStaysAndGoes) {
  for (const bool lessMotion : {false, true}) {
    headless.windowSystem().setPrefersReducedMotion(lessMotion);
    toast.show("First");
    EXPECT_EQ(panel()->alpha(), lessMotion ? 1 : 0);
    headless.advance(1.9);
    toast.show("Second");
    EXPECT_EQ(label().text(), "Second");
    EXPECT_EQ(panel()->alpha(), 1) << "it does not blink";
    EXPECT_EQ(headless.application().windows().size(), 1U);
    headless.advance(2.5);
    EXPECT_FALSE(panel()->isVisible());
    EXPECT_TRUE(headless.loop().isIdle());
  }
}

TEST_F(ToastTest, isMadeAgainWhenTheDesktopClosedIt) {
  toast.show("First");
  headless.advance(1);
  headless.windowSystem().clickDelete(*panel());
  toast.show("Second");
  ASSERT_NE(panel(), nullptr);
  EXPECT_TRUE(panel()->isVisible());
  EXPECT_EQ(panel()->alpha(), 0);
}

TEST_F(ToastTest, mayBeShownFromAnotherThreadWithoutRegardToTheWindow) {
  std::thread([this] { toast.show("From afar"); }).join();
  EXPECT_EQ(panel(), nullptr) << "nothing happens there";
  headless.loop().drain();
  ASSERT_NE(panel(), nullptr);
  EXPECT_EQ(label().text(), "From afar");

  auto brief = std::make_unique<VeltoToast>(headless.application(), headless.loop(), headless.loop());
  auto window = std::make_unique<Window>(headless.application(), Rect{{0, 0}, {9, 9}}, style_mask::kTitled);
  std::thread([&] {
    toast.show("Its window is gone", window.get());
    brief->show("Nobody shows this");
  }).join();
  window.reset();
  brief.reset();
  headless.loop().drain();
  EXPECT_EQ(label().text(), "Its window is gone");
}

}  // namespace
}  // namespace velto
