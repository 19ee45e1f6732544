#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/pages/PageChannels.h"
#include "app/pages/WindowMotion.h"
#include "app/windows/HovrelPanel.h"
#include "platform/headless/HeadlessPlatform.h"
#include "tests/support/PageWindowsSupport.h"
#include "tests/support/UrlSupport.h"

namespace velto {
namespace {

using test::url;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

JsonValue json(const std::string& text) { return readJson(text).value(); }

constexpr double kInfinity = std::numeric_limits<double>::infinity();

JsonValue pair(const char* first, double x, const char* second, double y) {
  return JsonValue(JsonValue::Object{{first, JsonValue(x)}, {second, JsonValue(y)}});
}

/// One window with a page, on the channels and nothing else of the application.
class PageChannelsTest : public ::testing::Test {
 protected:
  PageChannelsTest() : channels_(std::make_unique<PageChannels>(headless_.platform(), application_)) {
    auto panel = std::make_unique<HovrelPanel>(headless_.application(), Rect{{100, 200}, {900, 700}}, 0);
    panel_ = panel.get();
    application_.windows.append(std::move(panel));
    WebViewConfiguration configuration;
    configuration.userContentController = channels_->makeUserContentController(application_.pageWindows);
    panel_->setContentView(std::make_unique<View>());
    page_ = static_cast<HeadlessWebView*>(&panel_->contentView()->addSubview(
        headless_.webEngine().makeWebView({{0, 0}, {900, 700}}, std::move(configuration))));
    panel_->webView = *page_;
    page_->load({url("https://a.example/")});
    panel_->makeKeyAndOrderFront();
    headless_.advance(1);
  }

  void post(const std::string& channel, const JsonValue& body) {
    page_->postMessage(channel, body);
    headless_.advance(1);
  }
  ScriptReply ask(const std::string& body, bool isMainFrame = true) {
    std::optional<ScriptReply> got;
    page_->postMessage(
        "veltoWindow", json(body), {}, [&](const ScriptReply& reply) { got = reply; }, isMainFrame);
    headless_.advance(1);
    return got.value_or(ScriptReply{std::nullopt, "no reply"});
  }

  HeadlessPlatform headless_;
  test::PageWindowsSupport application_{headless_};
  std::unique_ptr<PageChannels> channels_;
  HovrelPanel* panel_ = nullptr;
  HeadlessWebView* page_ = nullptr;
};

TEST_F(PageChannelsTest, runTheScriptsThatAreInstalled) {
  const auto& scripts = page_->configuration().userContentController->userScripts();
  ASSERT_EQ(scripts.size(), 3U);
  const char* const marks[] = {"velto-injected-styles", "__veltoInjected", "__veltoScrollReporter"};
  for (std::size_t i = 0; i < scripts.size(); ++i) {
    EXPECT_THAT(scripts[i].source, HasSubstr(marks[i]));
    EXPECT_EQ(scripts[i].mainFrameOnly, i == 2) << "frames do not tell how far the page is scrolled";
  }

  headless_.files().remove(headless_.environment().resourcesDirectory / "scripts" / "video-button.js");
  PageChannels others(headless_.platform(), application_);
  EXPECT_EQ(others.makeUserContentController(application_.pageWindows)->userScripts().size(), 2U);
}

TEST(RequestedPage, isReadFromTheMessage) {
  const struct {
    const char* body;
    const char* target;
  } cases[] = {
      {R"({"player":"youtube","videoId":"aB3-_efghiJ","playing":true,"t":61.9})",
       "velto-player://youtube?v=aB3-_efghiJ&playing=true&t=61"},
      {R"({"player":"youtube","videoId":"aB3-_efghiJ","playing":1,"t":true})",
       "velto-player://youtube?v=aB3-_efghiJ"},
      {R"({"player":"youtube","videoId":"aB3-_efghiJ","playing":"true","t":-0.5})",
       "velto-player://youtube?v=aB3-_efghiJ"},
      {R"({"player":"youtube","videoId":"aB3-_efghiJ","t":9223372036854775807})",
       "velto-player://youtube?v=aB3-_efghiJ"},
      {R"({"player":"youtube","videoId":"short","url":"https://b.example/"})", nullptr},
      {R"({"player":"youtube","videoId":7,"url":"https://b.example/"})", "https://b.example/"},
      {R"({"url":"http://localhost:3000/x"})", "http://localhost:3000/x"},
      {R"({"url":"velto-player://youtube?v=aB3-_efghiJ"})", "velto-player://youtube?v=aB3-_efghiJ"},
      {R"({"url":"velto-player://youtube?v=short"})", nullptr},
      {R"({"url":"file:///etc/passwd"})", nullptr},
      {R"({"url":"no url"})", nullptr},
      {R"({"url":["https://b.example/"]})", nullptr},
      {R"({})", nullptr},
      {R"("https://b.example/")", nullptr},
  };
  for (const auto& c : cases) {
    const auto target = requestedPage(json(c.body));
    EXPECT_EQ(target ? target->absoluteString() : "", c.target != nullptr ? c.target : "") << c.body;
  }
}

TEST_F(PageChannelsTest, openWindowsWithinTheLimitForPages) {
  const JsonValue page = json(R"({"url":"https://c.example/"})");
  post("velto", json(R"({"url":"file:///x"})"));
  for (int i = 0; i < 7; ++i) post("velto", page);
  EXPECT_EQ(application_.opened, std::vector<std::string>(PopupLimit::kMostUnasked, "https://c.example/"));

  application_.opened.clear();
  for (int i = 0; i < 7; ++i) {
    page_->mouseDown({});
    page_->postMessage("velto", page);
    headless_.advance(2);
  }
  EXPECT_EQ(application_.opened.size(), 7U) << "each click on a page's own button works";
  for (int i = 0; i < 9; ++i) post("velto", json(R"({"player":"youtube","videoId":"aB3-_efghiJ"})"));
  EXPECT_EQ(application_.opened.size(), 12U) << "long after the last click";
}

TEST_F(PageChannelsTest, openPrivateWindowsForPrivatePages) {
  post("velto", json(R"({"url":"https://c.example/"})"));
  EXPECT_FALSE(application_.lastOptions.incognito);

  panel_->isPrivate = true;
  WebViewConfiguration configuration;
  configuration.userContentController = page_->configuration().userContentController;
  configuration.dataStore = headless_.webEngine().makeNonPersistentDataStore();
  auto page = headless_.webEngine().makeWebView({{0, 0}, {900, 700}}, configuration);
  page_ = static_cast<HeadlessWebView*>(&panel_->contentView()->addSubview(std::move(page)));
  page_->load({url("https://a.example/")});
  headless_.advance(1);
  post("velto", json(R"({"player":"youtube","videoId":"aB3-_efghiJ"})"));
  EXPECT_TRUE(application_.lastOptions.incognito);
  EXPECT_EQ(application_.lastOptions.dataStore, configuration.dataStore);
}

TEST_F(PageChannelsTest, dropMessagesThatAreNotAsTheyShouldBe) {
  const Rect before = panel_->frame();
  for (const char* body : {"null", "[1,2]", R"({"deltaX":1,"width":1,"x":1})",
                           R"({"deltaX":true,"deltaY":true,"width":true,"height":true,"x":true,"y":true})",
                           R"({"deltaX":"1","deltaY":2,"width":"1","height":2,"x":"1","y":2})"}) {
    for (const char* channel : {"windowDrag", "windowResize", "veltoScroll", "velto", "unknown"}) {
      post(channel, json(body));
    }
  }
  post("windowDrag", pair("deltaX", kInfinity, "deltaY", 0));
  post("windowResize", pair("width", std::numeric_limits<double>::quiet_NaN(), "height", 5));
  post("veltoScroll", pair("x", 0, "y", -kInfinity));
  EXPECT_EQ(panel_->frame(), before);
  EXPECT_FALSE(panel_->lastKnownScroll);
  EXPECT_THAT(application_.opened, IsEmpty());
  post("veltoScroll", json(R"({"x":0,"y":1200.5})"));
  EXPECT_EQ(panel_->lastKnownScroll, (LayoutScroll{0, 1200.5})) << "the next one counts";
}

TEST_F(PageChannelsTest, moveAndSizeTheKeyWindow) {
  HovrelPanel other(headless_.application(), {{500, 500}, {640, 360}}, 0);
  other.setMinSize({320, 180});
  other.makeKeyAndOrderFront();
  const Rect untouched = panel_->frame();

  post("windowDrag", json(R"({"action":"move","deltaX":4,"deltaY":10.5})"));
  EXPECT_EQ(other.frame(), (Rect{{504, 489.5}, {640, 360}}));
  other.setFrame({{500, 500}, {640, 360}});
  post("windowResize", json(R"({"width":10,"height":10})"));
  EXPECT_EQ(other.frame(), (Rect{{500, 680}, {320, 180}})) << "the least size, under the same top edge";
  post("windowResize", json(R"({"width":700,"height":200})"));
  EXPECT_EQ(other.frame(), (Rect{{500, 660}, {700, 200}}));
  EXPECT_EQ(panel_->frame(), untouched);

  page_->postMessage("windowResize", json(R"({"width":400,"height":300})"));
  headless_.advance(0.05);
  EXPECT_GT(other.frame().size.width, 400) << "it takes some steps";
  headless_.windowSystem().focus(nullptr);
  headless_.advance(1);
  const Rect left = other.frame();
  post("windowDrag", json(R"({"deltaX":40,"deltaY":40})"));
  EXPECT_EQ(other.frame(), left) << "no window of ours has the keyboard";
}

TEST_F(PageChannelsTest, surviveAbsurdNumbers) {
  const Rect area = headless_.application().mainScreen()->visibleFrame;
  for (const double x : {1e308, -1e308, 1e9, -1e9, 0.0}) {
    for (const double y : {1e308, -1e308, 1e9, -1e9, 0.0}) {
      for (int i = 0; i < 3; ++i) post("windowDrag", pair("deltaX", x, "deltaY", y));
      post("windowResize", pair("width", x, "height", y));
      const Rect shown = panel_->frame().intersection(area);
      EXPECT_GE(shown.size.width, 1) << x << " " << y;
      EXPECT_GE(shown.size.height, 1) << x << " " << y;
      EXPECT_LE(panel_->frame().size.width, Window::kMaximumSide);
    }
  }
}

TEST(WindowMotion, keepsAStripOfTheWindowOnAScreen) {
  Screen left;
  left.visibleFrame = {{0, 0}, {1000, 800}};
  Screen right;
  right.visibleFrame = {{1000, 200}, {500, 600}};
  const std::vector<Screen> screens{left, right};
  const struct {
    Rect asked;
    Point held;
  } cases[] = {
      {{{-279, -300}, {300, 200}}, {-278, -178}}, {{{1e6, 1e6}, {300, 200}}, {1478, 778}},
      {{{1490, -150}, {300, 200}}, {1478, 22}},   {{{1005, 100}, {300, 50}}, {978, 100}},
      {{{995, -10}, {10, 10}}, {990, 0}},         {{{-5000, 0}, {10000, 10000}}, {-5000, 0}},
  };
  for (const auto& c : cases) {
    const Rect held = heldOnScreens(c.asked, screens);
    EXPECT_EQ(held, (Rect{c.held, c.asked.size})) << c.asked.origin.x << "," << c.asked.origin.y;
  }
  EXPECT_EQ(heldOnScreens(cases[1].asked, {}), cases[1].asked);
}

TEST_F(PageChannelsTest, pinTheirOwnWindowAndTellTheTruth) {
  const std::string pinned = R"({"onTop":true})";
  const std::string free = R"({"onTop":false})";
  EXPECT_EQ(ask("{}").json, free);
  EXPECT_EQ(ask(R"({"onTop":1})").json, free) << "a number is no boolean";
  EXPECT_EQ(ask(R"([true])").json, free);
  EXPECT_EQ(ask(free).json, free);
  EXPECT_EQ(application_.recordings, 0);

  const ScriptReply reply = ask(pinned);
  EXPECT_EQ(reply.json, pinned);
  EXPECT_FALSE(reply.error);
  EXPECT_EQ(panel_->level(), kFloatingWindowLevel);
  EXPECT_EQ(ask(R"({"onTop":null})").json, pinned);
  EXPECT_EQ(ask(pinned).json, pinned);
  EXPECT_EQ(application_.recordings, 1) << "only a change is recorded";

  EXPECT_EQ(ask(free).json, free);
  EXPECT_EQ(panel_->level(), kNormalWindowLevel);
  panel_->unpinnedByPerson = true;
  EXPECT_EQ(ask(pinned).json, free);
  EXPECT_FALSE(panel_->isPinned);
  EXPECT_EQ(application_.recordings, 2);

  panel_->isPinned = true;
  EXPECT_EQ(ask(free).json, free) << "a page may unpin any window of its own";
}

TEST_F(PageChannelsTest, letNobodyElsePinTheWindow) {
  const std::string refusal = "Only a Velto window's own page can pin it";
  EXPECT_EQ(ask(R"({"onTop":true})", false).error, refusal);
  EXPECT_EQ(ask("{}", false).json, std::nullopt);

  Window plain(headless_.application(), {{0, 0}, {100, 100}}, 0);
  WebViewConfiguration configuration;
  configuration.userContentController = page_->configuration().userContentController;
  plain.setContentView(headless_.webEngine().makeWebView({{0, 0}, {100, 100}}, configuration));
  auto* stranger = static_cast<HeadlessWebView*>(plain.contentView());
  std::optional<std::string> error;
  stranger->postMessage("veltoWindow", json("{}"), {},
                        [&](const ScriptReply& reply) { error = reply.error; });
  headless_.advance(1);
  EXPECT_EQ(error, refusal);

  panel_->close();
  EXPECT_EQ(ask(R"({"onTop":true})").error, refusal);
  EXPECT_FALSE(panel_->isVisible());
  EXPECT_FALSE(panel_->isPinned);
}

TEST_F(PageChannelsTest, comeToNothingWhenTheApplicationIsGone) {
  page_->postMessage("windowDrag", json(R"({"deltaX":4,"deltaY":4})"));
  const Rect before = panel_->frame();
  channels_.reset();
  headless_.advance(1);
  EXPECT_NE(ask("{}").error, std::nullopt);
  EXPECT_EQ(panel_->frame(), before);
}

}  // namespace
}  // namespace velto
