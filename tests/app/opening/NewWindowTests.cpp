#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;

constexpr const char* kHistory =
    R"([{"url": "https://last.example/", "title": "", "timestamp": "2024-01-01T00:00:00Z"}])";

TEST(NewWindow, takesThePageOfTheKeyWindow) {
  const struct {
    const char* what;
    const char* keyPage;  // null: no key window
    bool history;
    bool incognito;
    const char* opened;
    bool addressReady;
  } cases[] = {
      {"a web page", "https://a.example/x", true, false, "https://a.example/x", false},
      {"any other page", "velto-history://history/", true, false, "velto-history://history/", false},
      {"no key window", nullptr, true, false, "https://last.example/", false},
      {"nothing at all", nullptr, false, false, "about:blank", true},
      {"private: a web page", "http://a.example/x", true, true, "http://a.example/x", false},
      {"private: any other page", "velto-history://history/", true, true, "about:blank", true},
      {"private: no key window", nullptr, true, true, "about:blank", true},
  };
  for (const auto& c : cases) {
    TestApplication app;
    AppDelegate& delegate = app.settle();
    app.subsystems.barsTakeAddresses = false;
    if (c.history) app.writeHistory(kHistory);
    if (c.keyPage != nullptr) app.showWindow(c.keyPage);
    const std::size_t before = app.panelCount();
    if (c.incognito) {
      delegate.newPrivateWindow();
    } else {
      delegate.newWindow();
    }
    app.settleDown();
    ASSERT_EQ(app.panelCount(), before + 1) << c.what;
    const HovrelPanel& panel = app.lastPanel();
    EXPECT_EQ(app.pages().back(), c.opened) << c.what;
    EXPECT_EQ(panel.pendingInitialAddress.has_value(), c.addressReady) << c.what;
    EXPECT_EQ(panel.isPrivate, c.incognito) << c.what;
    EXPECT_TRUE(panel.isKey()) << c.what;
    EXPECT_EQ(panel.frame().size, (Size{900, 700})) << c.what;
  }
}

TEST(NewWindow, stepsAwayFromTheKeyWindow) {
  TestApplication app;
  AppDelegate& delegate = app.settle();
  const Point from = app.showWindow("https://a.example/", {.width = 400, .x = 100, .y = 100}).frame().origin;
  delegate.newWindow();
  EXPECT_EQ(app.lastPanel().frame().origin, (Point{from.x + 24, from.y - 24}));
  delegate.newPrivateWindow();
  EXPECT_EQ(app.lastPanel().frame().origin, (Point{from.x + 48, from.y - 48}));
}

TEST(NewWindow, findsAPageDeepInsideAnotherWindow) {
  TestApplication app;
  AppDelegate& delegate = app.settle();
  Window other(app.headless.application(), {{0, 0}, {300, 200}}, style_mask::kTitled);
  auto content = std::make_unique<View>();
  View& inner = content->addSubview(std::make_unique<View>());
  auto page = app.headless.webEngine().makeWebView({}, {});
  page->load({test::url("https://deep.example/")});
  inner.addSubview(std::move(page));
  other.setContentView(std::move(content));
  other.makeKeyAndOrderFront();
  delegate.newWindow();
  EXPECT_EQ(app.pages().back(), "https://deep.example/");
}

}  // namespace
}  // namespace velto
