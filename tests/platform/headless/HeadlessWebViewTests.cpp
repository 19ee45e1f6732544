#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/EngineUrl.h"
#include "platform/headless/HeadlessPlatform.h"
#include "platform/headless/HeadlessWebView.h"
#include "tests/platform/headless/PageRecorder.h"

namespace velto {
namespace {

using Log = std::vector<std::string>;

TEST(HeadlessWebView, APageThatDoesNotRespondHoldsLoadsAndScriptsUntilItDies) {
  HeadlessPlatform headless;
  PageRecorder recorder;
  const auto webView = headless.webEngine().makeWebView({{0, 0}, {200, 100}}, {});
  webView->setNavigationDelegate(recorder);
  HeadlessWebView& page = *headless.webEngine().webViews().back();
  page.setScriptAnswer([](std::string_view) { return readJson("7"); });
  const auto load = [&](const char* url) { webView->load({*Url::parse(url)}); };
  Log answers;
  const auto ask = [&] {
    webView->evaluateJavaScript("x", [&](const auto& result) { answers.push_back(result ? "7" : "none"); });
    headless.advance(100);
  };
  load("http://a.example/");
  headless.advance();
  recorder.take();
  page.setResponsive(false);
  page.setResponsive(false);
  load("http://b.example/");
  ask();
  EXPECT_EQ(recorder.take(), Log{"not responsive"});
  EXPECT_TRUE(answers.empty());
  page.setResponsive(true);
  headless.advance();
  EXPECT_EQ(answers, Log{"7"});
  EXPECT_EQ(recorder.take(), (Log{"responsive", "start 2", "commit 2", "finish 2"}));

  page.setResponsive(false);
  ask();
  page.crash();
  headless.advance();
  EXPECT_EQ(answers, (Log{"7", "none"}));
  ask();
  EXPECT_EQ(answers, (Log{"7", "none", "none"}));
}

TEST(EngineUrl, WritesWebAddressesAsEnginesDo) {
  struct Case {
    const char* given;
    const char* written;
  };
  for (const Case& c : {
           Case{"http://localhost:3000", "http://localhost:3000/"},
           {"HTTP://LocalHost:80/Path?Q#F", "http://localhost/Path?Q#F"},
           {"https://Me:Pw@A.example:443?q", "https://Me:Pw@a.example/?q"},
           {"https://a.example:80#f", "https://a.example:80/#f"},
           {"http://[::1]:3000", "http://[::1]:3000/"},
           {"http://a.example:", "http://a.example/"},
           {"about:blank", "about:blank"},
           {"velto-history:///data.json", "velto-history:///data.json"},
       }) {
    EXPECT_EQ(engineUrl(*Url::parse(c.given)).absoluteString(), c.written);
  }
}

}  // namespace
}  // namespace velto
