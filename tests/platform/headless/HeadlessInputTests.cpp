#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/HeadlessInput.h"
#include "platform/headless/HeadlessPlatform.h"

namespace velto {
namespace {

using Log = std::vector<std::string>;

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

TEST(HeadlessInput, KeysGoFromTheWindowToItsPage) {
  HeadlessPlatform headless;
  HeadlessInput& input = headless.input();
  KeyWindow window{headless.application(), {{100, 200}, {100, 100}}, style_mask::kTitled};
  window.setContentView(std::make_unique<View>());
  window.contentView()->addSubview(headless.webEngine().makeWebView({{60, 60}, {40, 40}}, {}));
  window.orderFrontRegardless();
  const HeadlessWebView& page = *headless.webEngine().webViews().front();
  EXPECT_THROW(input.key(window, {}), std::logic_error) << "without the keyboard";
  input.click(window, {80, 80});
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
