#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;
using test::url;
using ::testing::Optional;

TEST(WindowFocus, goesToTheNewWindowUnlessItShallNot) {
  const struct {
    const char* what;
    bool activate, noFocus, onTop;
    bool takesKeyboard;
  } cases[] = {
      {"by default", true, false, false, true},
      {"in the background", false, false, false, false},
      {"without focus", true, true, false, false},
      {"both", false, true, false, false},
      {"on top", true, false, true, true},
      {"on top in the background", false, false, true, false},
      {"on top without focus", true, true, true, false},
  };
  for (const auto& c : cases) {
    TestApplication app;
    app.settle();
    const HovrelPanel& other = app.showWindow("https://other.example/");
    const int activations = app.headless.windowSystem().activations();
    const HovrelPanel& panel = app.showWindow(
        "https://a.example/", {.activate = c.activate, .onTop = c.onTop, .noFocus = c.noFocus});
    EXPECT_TRUE(panel.isVisible()) << c.what;
    EXPECT_EQ(app.headless.windowSystem().frontToBack().front(), &panel) << c.what;
    EXPECT_EQ(panel.isKey(), c.takesKeyboard) << c.what;
    EXPECT_EQ(other.isKey(), !c.takesKeyboard) << c.what;
    EXPECT_EQ(app.headless.windowSystem().activations() - activations, c.takesKeyboard ? 1 : 0) << c.what;
    EXPECT_EQ(panel.isPinned, c.onTop) << c.what;
    EXPECT_EQ(panel.level(), c.onTop ? 3 : 0) << c.what;
  }
}

TEST(WindowFocus, aBackgroundRequestLeavesTheKeyboardWithAnotherProgram) {
  for (const char* flag : {"background=true", "noFocus=true"}) {
    TestApplication app;
    app.settle();
    app.receive({std::string("velto://open?url=https://a.example/&onTop=true&") + flag});
    EXPECT_EQ(app.headless.application().keyWindow(), nullptr) << flag;
    EXPECT_EQ(app.headless.windowSystem().activations(), 0) << flag;
    EXPECT_EQ(app.lastPanel().isNonactivating(), std::string(flag) == "noFocus=true") << flag;
  }
}

TEST(WindowFocus, theAddressIsReadyForTypingAsSoonAsTheBarTakesIt) {
  TestApplication app;
  app.settle();
  HovrelPanel& panel = app.openWindow("https://a.example/", {.focusAddress = true});
  EXPECT_EQ(app.barOf(panel).address, "https://a.example/") << "already while it opens";
  EXPECT_FALSE(panel.pendingInitialAddress);
  EXPECT_LT(test::positionOf(app.log(), "bar: expand"),
            test::positionOf(app.log(), "bar: address \"https://a.example/\""));
  app.settleDown();
  EXPECT_EQ(app.subsystems.countOf("bar: address \"https://a.example/\""), 1) << "not again";
}

TEST(WindowFocus, theAddressWaitsUntilTheBarTakesIt) {
  TestApplication app;
  app.subsystems.barsTakeAddresses = false;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/", {.focusAddress = true});
  EXPECT_THAT(panel.pendingInitialAddress, Optional(std::string("https://a.example/")));

  app.barOf(panel).takesAddress = true;
  app.headless.windowSystem().focus(nullptr);
  EXPECT_TRUE(panel.pendingInitialAddress);
  app.headless.windowSystem().focus(&panel);
  EXPECT_FALSE(panel.pendingInitialAddress) << "the application became active";
  EXPECT_EQ(app.barOf(panel).address, "https://a.example/");
}

TEST(WindowFocus, theAddressIsTriedOnceMoreInTheNextTurn) {
  TestApplication app;
  app.subsystems.barsTakeAddresses = false;
  app.settle();
  HovrelPanel& panel = app.openWindow("https://a.example/", {.focusAddress = true});
  app.barOf(panel).takesAddress = true;
  app.settleDown();
  EXPECT_FALSE(panel.pendingInitialAddress);
}

TEST(WindowFocus, anInactiveWindowKeepsItsAddressForLater) {
  TestApplication app;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/", {.focusAddress = true, .activate = false});
  EXPECT_TRUE(panel.pendingInitialAddress);
  EXPECT_FALSE(app.barOf(panel).address);
  app.headless.windowSystem().focus(&panel);
  EXPECT_FALSE(panel.pendingInitialAddress);
}

TEST(WindowFocus, becomingActiveWithAnotherWindowLeavesThePendingOne) {
  TestApplication app;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/", {.focusAddress = true, .activate = false});
  Window other(app.headless.application(), {{0, 0}, {300, 200}}, style_mask::kTitled);
  other.makeKeyAndOrderFront();
  EXPECT_TRUE(panel.pendingInitialAddress);
}

TEST(WindowFocus, theWindowMayBeGoneBeforeTheNextTurn) {
  TestApplication app;
  app.subsystems.barsTakeAddresses = false;
  app.settle();
  app.openWindow("https://a.example/", {.focusAddress = true});
  app.quit();
  app.settleDown();
  EXPECT_EQ(app.subsystems.countOf("bar: address \"https://a.example/\""), 2)
      << "on becoming key and on activation";
}

}  // namespace
}  // namespace velto
