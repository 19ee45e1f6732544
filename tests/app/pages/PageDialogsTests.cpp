#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;
using ::testing::ElementsAre;

TEST(PageDialogs, askBeforeAPageIsLeft) {
  const struct {
    const char* page;
    const char* text;
  } cases[] = {
      {"https://www.a.example:8080/x", "From “www.a.example”: changes you made may not be saved."},
      {"http://[::1]:3000/", "From “::1”: changes you made may not be saved."},
      {"file:///tmp/a.html", "Changes you made may not be saved."},
      {"velto-history:empty", "Changes you made may not be saved."},
  };
  for (const auto& c : cases) {
    TestApplication app;
    app.settle();
    HovrelPanel& panel = app.openWindow("about:blank");
    std::vector<bool> answers;
    for (const char* button : {"Leave Page", "Stay on Page"}) {
      panel.webView->uiDelegate()->runBeforeUnloadConfirmPanel(*panel.webView, test::url(c.page),
                                                               [&](bool leave) { answers.push_back(leave); });
      ASSERT_EQ(app.headless.windowSystem().alerts().size(), 1U);
      const Alert alert = app.headless.windowSystem().alerts().front();
      EXPECT_EQ(alert.style, Alert::Style::warning);
      EXPECT_EQ(alert.messageText, "Are you sure you want to leave this page?");
      EXPECT_EQ(alert.informativeText, c.text) << c.page;
      EXPECT_THAT(alert.buttons, ElementsAre("Leave Page", "Stay on Page"));
      EXPECT_FALSE(alert.textField);
      app.headless.windowSystem().answerAlert(button);
      app.settleDown();
    }
    EXPECT_THAT(answers, ElementsAre(true, false)) << c.page;
  }
}

TEST(PageDialogs, belongToTheWindowOfTheirPage) {
  TestApplication app;
  app.settle();
  HovrelPanel& panel = app.showWindow("https://a.example/");
  app.showWindow("https://b.example/");
  std::vector<bool> answers;
  panel.webView->uiDelegate()->runBeforeUnloadConfirmPanel(*panel.webView, panel.webView->url(),
                                                           [&](bool leave) { answers.push_back(leave); });
  panel.close();
  app.settleDown();
  EXPECT_THAT(answers, ElementsAre(false)) << "the window went, and the question with it";
}

}  // namespace
}  // namespace velto
