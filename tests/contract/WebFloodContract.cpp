#ifdef VELTO_CONTRACT_GTK

#include <fstream>

#include <unistd.h>

#include "tests/contract/WebContract.h"

namespace velto::test {
namespace {

/// Pages that ask for more than is theirs.
class WebFloodContract : public WebContract {
 protected:
  static constexpr double kReadingTime = 2.5;

  static double megabytes() {
    std::ifstream status("/proc/self/statm");
    double all = 0;
    double resident = 0;
    status >> all >> resident;
    return resident * static_cast<double>(getpagesize()) / 1e6;
  }
  /// A page that runs the script soon after it was loaded.
  void visitPage(const std::string& script) {
    visit(site.add("/flood",
                   {.title = "Flood", .html = "<script>setTimeout(() => {" + script + "}, 200)</script>"}));
  }
};

TEST_F(WebFloodContract, windowsHoldUpNobodyElse) {
  WebViewConfiguration configuration;
  configuration.javaScriptCanOpenWindowsAutomatically = true;
  open(configuration);
  PageRecorder others;
  const auto other = contract.platform().webEngine.makeWebView({{0, 0}, {100, 100}}, {});
  other->setNavigationDelegate(static_cast<NavigationDelegate*>(&others));
  const Url page = site.add("/b", {.title = "Second"});
  visitPage("const end = Date.now() + 2000; while (Date.now() < end) open('/b')");
  contract.letPass(0.5);
  others.take();
  for (std::size_t events = 3; events <= 9; events += 3) {
    other->load({page, 60});
    EXPECT_TRUE(contract.runUntil([&] { return others.log.size() == events; }, 1));
  }
  contract.letPass(1.5);
  EXPECT_GT(recorder.windows.size(), 20U);
}

TEST_F(WebFloodContract, messagesTakeNeitherTimeNorMemoryFromTheOthers) {
  struct Case {
    const char* name;
    std::string body;
    int count;
    bool isInLoop = false;
  };
  const std::string big = "'x'.repeat(1000000) + n++";
  const std::string deep = "deep";
  const std::vector<Case> cases = {
      {"many", "{n}", 100},
      {"big", big, 4},
      {"deep", deep, 10},
      {"many in a loop", "{n}", 1, true},
      {"big in a loop", big, 1, true},
      {"deep in a loop", deep, 1, true},
      {"wide", "wide", 1},
      {"longer than it is", "doubled", 1},
  };
  const std::string bodies =
      "let n = 0, deep = [], doubled = ['x']; const wide = [];"
      "for (let i = 0; i < 3000; ++i) deep = [deep];"
      "for (let i = 0; i < 26; ++i) doubled = [doubled, doubled];"
      "for (let i = 0; i < 40000; ++i) wide.push(i);";
  const Clock& clock = contract.platform().clock;
  for (const Case& c : cases) {
    WebViewConfiguration configuration;
    configuration.userContentController->addMessageHandler("say", [](auto&, auto&) {});
    open(configuration);
    const std::string post = "for (let k = 0; k < " + std::to_string(c.count) +
                             "; ++k) webkit.messageHandlers.say.postMessage(" + c.body + ");";
    visitPage(bodies + (c.isInLoop ? "const end = Date.now() + 2500; while (Date.now() < end) {" + post + "}"
                                   : "setInterval(() => {" + post + "}, 10)"));
    const double memory = megabytes();
    double most = memory;
    double last = clock.uptime().seconds;
    double held = 0;
    const Timer watch = contract.platform().mainQueue.every(0.01, [&] {
      const double now = clock.uptime().seconds;
      if (now - last > 0.05) held += now - last;
      last = now;
      most = std::max(most, megabytes());
    });
    contract.letPass(kReadingTime);
    // Without a limit it is all of the time, and hundreds of megabytes.
    EXPECT_LT(held, kReadingTime / 2) << c.name;
    EXPECT_LT(most - memory, 150) << c.name;
  }
}

TEST_F(WebFloodContract, channelsComeBackAndNobodyWaitsForAReplyForEver) {
  int asked = 0;
  WebViewConfiguration configuration;
  configuration.userContentController->addReplyHandler("ask", [&](auto&, auto&, const auto& reply) {
    ++asked;
    reply({"1", std::nullopt});
  });
  open(configuration);
  const std::string ask = "webkit.messageHandlers.ask.postMessage('x'.repeat(900000))";
  visitPage("posted = over = 0; const one = async () => { ++posted; try { await " + ask +
            " } catch {} ++over }; for (let k = 0; k < 60; ++k) one()");
  const auto isOver = [&] {
    return site.evaluate(*webView, "posted === 60 && over === posted") == readJson("true");
  };
  for (int attempt = 0; attempt < 100 && !isOver(); ++attempt) contract.letPass(0.05);
  EXPECT_TRUE(isOver());
  EXPECT_LT(asked, 60);
  asked = 0;
  webView->evaluateJavaScript("setInterval(() => { if (window.webkit?.messageHandlers?.ask) one = " + ask +
                              " }, 100); 0");
  EXPECT_TRUE(contract.runUntil([&] { return asked > 0; }));
}

}  // namespace
}  // namespace velto::test

#endif
