#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/HeadlessPlatform.h"
#include "platform/headless/HeadlessWebView.h"
#include "tests/platform/headless/PageRecorder.h"

namespace velto {
namespace {

using Log = std::vector<std::string>;

/// What a scripted page asks of the person.
class HeadlessPageRequestTest : public testing::Test {
 protected:
  HeadlessPageRequestTest() { webView->setUIDelegate(recorder); }
  void askEverything() {
    auto& page = dynamic_cast<HeadlessWebView&>(*webView);
    page.alert("Hi", [this] { answers.emplace_back("closed"); });
    page.confirm("Ok?", [this](bool ok) { answers.emplace_back(ok ? "ok" : "not ok"); });
    page.prompt("Who?", "Me",
                [this](std::optional<std::string> text) { answers.push_back(text.value_or("nobody")); });
    page.chooseFiles({.allowsMultipleSelection = true, .mimeTypes = {}}, [this](const auto& chosen) {
      answers.push_back(chosen ? std::to_string(chosen->size()) + " files" : "no files");
    });
    page.openWindow({.url = Url::parse("http://a.example/"), .width = 300, .height = {}});
  }

  HeadlessPlatform headless;
  PageRecorder recorder;
  std::unique_ptr<WebView> webView = headless.webEngine().makeWebView({{0, 0}, {200, 100}}, {});
  Log answers;
};

TEST_F(HeadlessPageRequestTest, AnswersReachThePageThroughTheLoop) {
  askEverything();
  EXPECT_TRUE(recorder.log.empty());
  headless.advance();
  EXPECT_EQ(recorder.log,
            (Log{"alert Hi", "confirm Ok?", "prompt Who? [Me]", "files", "window http://a.example/"}));
  EXPECT_TRUE(recorder.panels[0].allowsMultipleSelection);
  EXPECT_EQ(recorder.windows[0].width, 300);
  recorder.alerts[0]();
  recorder.questions[0](true);
  recorder.questions[0](false);
  recorder.prompts[0]("You");
  recorder.fileQuestions[0]({{"/a", "/b"}});
  EXPECT_TRUE(answers.empty());
  headless.advance();
  EXPECT_EQ(answers, (Log{"closed", "ok", "You", "2 files"}));
}

TEST_F(HeadlessPageRequestTest, WhatNobodyAnswersIsCancelled) {
  const Log cancelled{"closed", "not ok", "nobody", "no files"};
  askEverything();
  headless.advance();
  recorder.alerts.clear();
  recorder.questions.clear();
  recorder.prompts.clear();
  recorder.fileQuestions.clear();
  headless.advance();
  EXPECT_EQ(std::exchange(answers, {}), cancelled);

  webView->setUIDelegate(nullptr);
  askEverything();
  headless.advance();
  EXPECT_EQ(std::exchange(answers, {}), cancelled);

  webView->setUIDelegate(recorder);
  askEverything();
  headless.advance();
  webView.reset();
  recorder.alerts[0]();
  headless.advance();
  EXPECT_TRUE(answers.empty());
}

}  // namespace
}  // namespace velto
