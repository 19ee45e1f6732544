#include <filesystem>
#include <fstream>

#include "tests/contract/WebContract.h"

namespace velto::test {
namespace {

using ::testing::ElementsAre;

/// What pages ask of the person and of the desktop.
class WebRequestContract : public WebContract {
 protected:
  void SetUp() override {
    WebViewConfiguration configuration;
    configuration.javaScriptCanOpenWindowsAutomatically = true;
    open(configuration);
    visit(site.add("/a", {.title = "First"}));
  }
};

#ifdef VELTO_CONTRACT_GTK

TEST_F(WebRequestContract, asksThePersonWhileThePageWaits) {
  struct Case {
    const char* script;
    const char* asked;
    std::function<void(PageRecorder&)> answer;
    const char* result;
  };
  const std::vector<Case> cases = {
      {"alert('Hi'); 'on'", "alert Hi", [](PageRecorder& r) { r.alerts.back()(); }, R"("on")"},
      {"alert('\\ud800!'); 1", "alert \xEF\xBF\xBD!", [](PageRecorder& r) { r.alerts.clear(); }, "1"},
      {"confirm('Ok?')", "confirm Ok?", [](PageRecorder& r) { r.questions.back()(true); }, "true"},
      {"confirm('Ok?')", "confirm Ok?", [](PageRecorder& r) { r.questions.clear(); }, "false"},
      {"prompt('Who?', 'Me')", "prompt Who? [Me]", [](PageRecorder& r) { r.prompts.back()(""); }, R"("")"},
      {"prompt('Who?')", "prompt Who? []", [](PageRecorder& r) { r.prompts.clear(); }, "null"},
  };
  for (const Case& c : cases) {
    recorder.take();
    std::optional<JsonValue> result;
    bool over = false;
    webView->evaluateJavaScript(c.script, [&](std::optional<JsonValue> value) {
      result = std::move(value);
      over = true;
    });
    ASSERT_TRUE(contract.runUntil([&] { return !recorder.log.empty(); })) << c.script;
    contract.letPass(0.03);
    EXPECT_FALSE(over) << c.script;
    c.answer(recorder);
    ASSERT_TRUE(contract.runUntil([&] { return over; })) << c.script;
    EXPECT_THAT(recorder.take(), ElementsAre(c.asked));
    EXPECT_EQ(result, readJson(c.result)) << c.script;
  }
  webView->setUIDelegate(nullptr);
  EXPECT_EQ(site.evaluate(*webView, "alert('Hi'); [confirm('Ok?'), prompt('Who?')]"),
            readJson("[false, null]"));
}

TEST_F(WebRequestContract, showsTheBeginningOfAnEndlessText) {
  webView->evaluateJavaScript("alert('ä'.repeat(5000000))");
  ASSERT_TRUE(contract.runUntil([&] { return !recorder.alerts.empty(); }));
  EXPECT_LT(recorder.log.back().size(), 20'000U);
  EXPECT_TRUE(recorder.log.back().ends_with("ä…"));
}

TEST_F(WebRequestContract, takesAnswersWhenItIsGone) {
  for (const char* script : {"alert('Hi')", "prompt('Who?')",
                             "document.body.innerHTML = '<input type=file>';"
                             "document.querySelector('input').click()"}) {
    recorder.take();
    webView->evaluateJavaScript(script);
    ASSERT_TRUE(contract.runUntil([&] { return !recorder.log.empty(); })) << script;
    close();
    for (const auto& answer : recorder.alerts) answer();
    for (const auto& answer : recorder.prompts) answer("You");
    for (const auto& answer : recorder.fileQuestions) answer({{"/etc/hosts"}});
    contract.letPass(0.05);
    SetUp();
  }
}

TEST_F(WebRequestContract, tellsOfTheWindowsThatAPageOpens) {
  struct Case {
    std::string script;
    std::string told;
    std::optional<double> width = {};
    std::optional<double> height = {};
  };
  const std::string second = site.add("/b", {.title = "Second"}).absoluteString();
  const std::vector<Case> cases = {
      {"open('/b', '', 'width=300,height=200')", second, 300, 200},
      {"open('/b', '', 'noopener,width=300,height=200')", second, 300, 200},
      {"open('/b')", second},
      {"open('about:blank')", "about:blank"},
      {"open('javascript:alert(1)')", "-"},
      {"open('data:text/html,hello')", "-"},
      {"open(URL.createObjectURL(new Blob(['x'])))", "-"},
      {"document.body.innerHTML = '<a target=_blank href=/b>'; document.querySelector('a').click()", second},
      {"document.body.innerHTML = '<form target=_blank method=post action=/b>'; document.forms[0].submit()",
       second},
  };
  for (const Case& c : cases) {
    webView->evaluateJavaScript("opened = (() => { " + c.script + " })(); 0");
    ASSERT_TRUE(contract.runUntil([&] { return !recorder.windows.empty(); })) << c.script;
    // Once, and with nothing loaded.
    contract.letPass(0.1);
    EXPECT_THAT(recorder.take(), ElementsAre("window " + c.told)) << c.script;
    EXPECT_EQ(recorder.windows[0].width, c.width) << c.script;
    EXPECT_EQ(recorder.windows[0].height, c.height) << c.script;
    EXPECT_TRUE(recorder.windows[0].isUserGesture) << c.script;
    recorder.windows.clear();
  }
  const Url alone = site.add("/alone", {.title = "Alone", .html = "<script>w = open('/b'); n = 0</script>"});
  ASSERT_TRUE(waitFor(line("finish", load(alone))));
  ASSERT_TRUE(contract.runUntil([&] { return recorder.windows.size() == 1; }));
  EXPECT_FALSE(recorder.windows[0].isUserGesture);
  EXPECT_EQ(site.evaluate(*webView, "w.closed"), readJson("true"));
}

TEST_F(WebRequestContract, letsThePersonChooseFiles) {
  const auto file = std::filesystem::temp_directory_path() / "velto-contract-fïle.txt";
  std::ofstream(file) << "hello";
  const std::string inputs = "<input type=file><input type=file multiple accept='image/*,text/plain'>";
  visit(site.add("/files", {.title = "Files", .html = inputs}));
  const auto choose = [&](const std::string& input, const OpenPanel& asked,
                          const std::optional<std::vector<std::filesystem::path>>& chosen) {
    site.evaluate(*webView, "input = document.querySelectorAll('input')[" + input + "]; input.click(); 0");
    ASSERT_TRUE(contract.runUntil([&] { return !recorder.panels.empty(); }));
    EXPECT_EQ(recorder.panels[0].allowsMultipleSelection, asked.allowsMultipleSelection);
    EXPECT_EQ(recorder.panels[0].mimeTypes, asked.mimeTypes);
    recorder.fileQuestions[0](chosen);
    recorder.panels.clear();
    recorder.fileQuestions.clear();
    contract.letPass(0.1);
    EXPECT_EQ(site.evaluate(*webView, "[...input.files].map(f => f.name + ' ' + f.size)"),
              readJson(R"(["velto-contract-fïle.txt 5"])"));
  };
  choose("0", {.mimeTypes = {}}, {{file}});
  choose("1", {.allowsMultipleSelection = true, .mimeTypes = {"image/*", "text/plain"}}, {{file}});
  choose("0", {.mimeTypes = {}}, std::nullopt);
  std::filesystem::remove(file);
}

#endif

}  // namespace
}  // namespace velto::test
