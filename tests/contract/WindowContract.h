#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ui/Window.h"
#include "tests/contract/ContractPlatform.h"

namespace velto::test {

inline constexpr unsigned kStyle =
    style_mask::kTitled | style_mask::kClosable | style_mask::kMiniaturizable | style_mask::kResizable;

/// A window that writes down what it is told.
class RecordingWindow final : public Window, public WindowDelegate {
 public:
  RecordingWindow(Application& application, const Rect& frame, unsigned style)
      : Window(application, frame, style) {
    setDelegate(static_cast<WindowDelegate*>(this));
  }

  void windowDidBecomeKey(Window&) override { log.emplace_back("key"); }
  bool windowShouldClose(Window&) override {
    log.emplace_back("should close");
    return mayClose;
  }
  void windowWillClose(Window&) override { log.emplace_back("will close"); }
  void windowDidMove(Window&) override { log.emplace_back("moved"); }
  void windowDidResize(Window&) override { log.emplace_back("resized"); }

  std::vector<std::string> log;
  bool mayClose = true;
};

class WindowContract : public testing::Test {
 protected:
  Application& application() { return contract.platform().application; }

  std::unique_ptr<RecordingWindow> make(const Rect& frame = {{100, 100}, {300, 200}},
                                        unsigned style = kStyle) {
    return std::make_unique<RecordingWindow>(application(), frame, style);
  }
  std::unique_ptr<RecordingWindow> makeKey(const Rect& frame) {
    auto window = make(frame);
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(contract.runUntil([&] { return window->isKey(); }));
    window->log.clear();
    return window;
  }
  /// Longer than a desktop takes to answer.
  void settle() { contract.letPass(0.6); }

  ContractPlatform contract;
};

}  // namespace velto::test
