#ifdef VELTO_CONTRACT_GTK

#include "tests/contract/WebContract.h"

namespace velto::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

/// Which messages count as those of the main frame.
class WebMainFrameContract : public WebContract {
 protected:
  void SetUp() override {
    auto controller = std::make_shared<UserContentController>();
    controller->addReplyHandler("ask", [this](WebView&, const ScriptMessage& message,
                                              const std::function<void(ScriptReply)>& reply) {
      const auto* text = message.body.as<std::string>();
      received.push_back((text != nullptr ? *text : "other") + (message.isMainFrame ? " main" : " frame"));
      reply({"true", std::nullopt});
    });
    WebViewConfiguration configuration;
    configuration.userContentController = std::move(controller);
    open(configuration);
  }
  /// Shows a page with the HTML and gives what it posted, when that is so many messages.
  std::vector<std::string> receivedFrom(const std::string& html, std::size_t count) {
    received.clear();
    visit(site.add("/page", {.title = "Page", .html = html}));
    EXPECT_TRUE(contract.runUntil([&] { return received.size() >= count; }, 5)) << html;
    contract.letPass(0.05);
    return received;
  }
  static std::string script(const std::string& text) { return "<script>" + text + "</script>"; }

  std::vector<std::string> received;
};

const std::string kPost = "webkit.messageHandlers.ask.postMessage";

TEST_F(WebMainFrameContract, countsTheMainFrameWhateverThePageDoes) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {kPost + "('at once')", "at once main"},
      {kPost + "()", "other main"},
      {kPost + "({token: 'mine', body: 'inner'})", "other main"},
      {kPost + "('answered').then(v => " + kPost + "('got ' + v))", "got true main"},
      {"Reflect.apply = Promise = Symbol = null; Function.prototype.call = Function.prototype.apply = null;"
       "for (const name of ['token', 'body', 'postMessage', '0'])"
       "  Object.defineProperty(Object.prototype, name, {get() { throw 1 }, set() { throw 2 }});"
       "Array.prototype[Symbol?.iterator] = null;" +
           kPost + "('overridden')",
       "overridden main"},
      {"for (let i = 0; i < 200; ++i) new Uint8Array(1 << 22).fill(i);"
       "setTimeout(() => { for (let i = 0; i < 200; ++i) new Array(1e5).fill({}); " +
           kPost + "('collected') }, 100)",
       "collected main"},
      {"onload = () => { document.open(); document.write('<title>New</title><p>new<script>" + kPost +
           "(\"written\")</' + 'script>'); document.close() }",
       "written main"},
      {"onload = () => setTimeout(() => { history.pushState({}, '', '/other'); " + kPost + "('pushed') })",
       "pushed main"},
  };
  for (const auto& [html, line] : cases) {
    EXPECT_THAT(receivedFrom(script(html), line == "got true main" ? 2 : 1), Contains(line)) << html;
  }
}

TEST_F(WebMainFrameContract, countsNoOtherFrame) {
  ContractSite elsewhere(contract);
  const std::string attack =
      kPost + "('own');" + kPost + "({token: '', body: 'empty'});" + kPost +
      "({token: '0'.repeat(32), body: 'guessed'});"
      "Object.getPrototypeOf(webkit.messageHandlers.ask).postMessage.call(webkit.messageHandlers.ask, 'raw');"
      "dispatchEvent(new InputEvent('askMainFrame:token', {data: 'x', cancelable: true}));"
      "dispatchEvent(new Event('askMainFrame:ready'));" +
      kPost + "({token: 'x', body: 'made up'});";
  const std::string page = site.add("/frame", {.title = "Frame", .html = script(attack)}).absoluteString();
  const Url other = elsewhere.add("/frame", {.title = "Other", .html = script(attack)});
  std::string crossSite = other.absoluteString();
  crossSite.replace(crossSite.find("127.0.0.1"), 9, "localhost");
  const std::string makeFrame =
      "const frame = document.createElement('iframe'); document.body.append(frame);";
  for (const std::string& html :
       {"<iframe src='" + page + "'></iframe>", "<iframe src='" + other.absoluteString() + "'></iframe>",
        "<iframe src='" + crossSite + "'></iframe>", "<iframe srcdoc=\"" + script(attack) + "\"></iframe>",
        "<iframe sandbox=allow-scripts srcdoc=\"" + script(attack) + "\"></iframe>",
        script("onload = () => {" + makeFrame + "frame.contentWindow.eval(`" + attack + "`) }"),
        script("onload = () => setTimeout(() => {" + makeFrame + "frame.src = '" + page + "' }, 200)")}) {
    EXPECT_THAT(receivedFrom(html, 5),
                ElementsAre("own frame", "empty frame", "guessed frame", "raw frame", "made up frame"))
        << html;
    // The page itself is what it was.
    site.evaluate(*webView, kPost + "('page'); 0");
    ASSERT_TRUE(contract.runUntil([&] { return received.size() == 6; }));
    EXPECT_EQ(received.back(), "page main");
  }
}

TEST_F(WebMainFrameContract, forgetsAPageWhenAnotherOneIsShown) {
  ContractSite elsewhere(contract);
  Url crossSite = elsewhere.add("/b", {.title = "Other", .html = script(kPost + "('next')")});
  std::string text = crossSite.absoluteString();
  crossSite = Url::parse(text.replace(text.find("127.0.0.1"), 9, "localhost")).value();
  const std::string leaving =
      "const post = " + kPost +
      ".bind(webkit.messageHandlers.ask);"
      "for (const event of ['pagehide', 'unload', 'visibilitychange'])"
      "  addEventListener(event, () => { for (let i = 0; i < 20; ++i) post('late') });";
  for (const Url& next :
       {site.add("/b", {.title = "Second", .html = script(kPost + "('next')")}), crossSite}) {
    bool shown = false;
    recorder.onEvent = [&](WebView& view, const std::string& event) {
      if (!event.starts_with("commit") || view.url() != next) return;
      shown = true;
      received.clear();
    };
    receivedFrom(script(leaving), 0);
    load(next);
    ASSERT_TRUE(contract.runUntil([&] { return shown && std::ranges::count(received, "next main") == 1; }));
    contract.letPass(0.1);
    EXPECT_THAT(received, Not(Contains("late main"))) << next.absoluteString();
    recorder.onEvent = nullptr;

    // Back from the page cache, or anew.
    received.clear();
    const auto back = webView->goBack().value().number;
    ASSERT_TRUE(waitFor(line("finish", back)));
    contract.letPass(0.1);
    site.evaluate(*webView, kPost + "('back'); 0");
    ASSERT_TRUE(contract.runUntil([&] { return !received.empty(); }));
    EXPECT_EQ(received.back(), "back main") << next.absoluteString();
  }
}

TEST_F(WebMainFrameContract, countsAPageThatIsATextOrHasANewProcess) {
  const auto number =
      webView->loadHtml(script(kPost + "('text')"), Url::parse("http://a.example/")).value().number;
  ASSERT_TRUE(waitFor(line("finish", number)));
  EXPECT_THAT(received, ElementsAre("text main"));
  EXPECT_THAT(receivedFrom(script(kPost + "('first')"), 1), ElementsAre("first main"));
  site.crash(*webView);
  ASSERT_TRUE(waitFor("terminated"));
  EXPECT_THAT(receivedFrom(script(kPost + "('second')"), 1), ElementsAre("second main"));
}

}  // namespace
}  // namespace velto::test

#endif
