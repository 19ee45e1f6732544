#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/HeadlessPlatform.h"
#include "platform/headless/HeadlessWindowSystem.h"

namespace velto {
namespace {

Alert alertWith(const std::string& text) {
  return {
      .messageText = text, .informativeText = {}, .buttons = {"Leave Page", "Stay on Page"}, .textField = {}};
}

TEST(HeadlessWindowSystem, WhatAPersonCouldNotDoFails) {
  HeadlessPlatform headless;
  HeadlessWindowSystem& desktop = headless.windowSystem();
  Application& application = headless.application();
  const auto hidden = std::make_unique<Window>(application, Rect{{0, 0}, {100, 100}}, style_mask::kTitled);
  EXPECT_THROW(desktop.focus(hidden.get()), std::logic_error);
  EXPECT_THROW(desktop.clickDelete(*hidden), std::logic_error);

  EXPECT_THROW(desktop.answerAlert(0), std::logic_error);
  EXPECT_THROW(application.showAlert({}, nullptr, [](const AlertAnswer&) {}), std::logic_error);
  std::optional<std::size_t> pressed;
  application.showAlert(alertWith("once"), nullptr,
                        [&](const AlertAnswer& answer) { pressed = answer.button; });
  EXPECT_THROW(desktop.answerAlert(2), std::logic_error);
  EXPECT_THROW(desktop.answerAlert("OK"), std::logic_error);
  desktop.answerAlert("Stay on Page");
  EXPECT_THROW(desktop.answerAlert(0), std::logic_error);
  headless.advance();
  EXPECT_EQ(pressed, 1U);

  using Files = HeadlessWindowSystem::ChosenFiles;
  EXPECT_THROW(desktop.answerOpenPanel(std::nullopt), std::logic_error);
  application.showOpenPanel({}, nullptr, [](const Files&) {});
  EXPECT_THROW(desktop.answerOpenPanel(Files({"/a", "/b"})), std::logic_error) << "it asks for one";
  desktop.answerOpenPanel(Files({"/a"}));
}

TEST(HeadlessAlerts, OneThatNobodyAnswersIsReportedAtTheEnd) {
  std::vector<std::string> failures;
  {
    HeadlessPlatform headless;
    headless.onFailure = [&](const std::string& failure) { failures.push_back(failure); };
    auto window = std::make_unique<Window>(headless.application(), Rect{{0, 0}, {10, 10}}, 0);
    for (const char* text : {"answered", "on a window that goes with the test", "forgotten"}) {
      headless.application().showAlert(alertWith(text), text[0] == 'o' ? window.get() : nullptr,
                                       [](const AlertAnswer&) {});
    }
    headless.windowSystem().answerAlert("Leave Page");
    headless.application().showOpenPanel({}, nullptr, [](const auto&) {});
    window.reset();
  }
  EXPECT_EQ(failures,
            (std::vector<std::string>{"Nobody answered the alert \"on a window that goes with the test\"",
                                      "Nobody answered the alert \"forgotten\"",
                                      "Nobody answered the question for files"}));
}

TEST(HeadlessAlertsDeathTest, WithoutATestToTellTheProcessEnds) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto forget = [] {
    HeadlessPlatform headless;
    headless.application().showAlert(alertWith("Sure?"), nullptr, [](const AlertAnswer&) {});
  };
  EXPECT_DEATH(forget(), "Nobody answered the alert \"Sure\\?\"");
}

TEST(HeadlessPlatform, WorkThatIsStillQueuedMayOwnWindowsAndWebViews) {
  HeadlessPlatform headless;
  auto window = std::make_unique<Window>(headless.application(), Rect{{0, 0}, {10, 10}}, 0);
  window->setContentView(headless.webEngine().makeWebView({}, {}));
  window->makeKeyAndOrderFront();
  headless.backgroundQueue().hold(true);
  headless.backgroundQueue().async([window = std::move(window)] {});
  headless.loop().after(1, [webView = headless.webEngine().makeWebView({}, {})] {});
}

}  // namespace
}  // namespace velto
