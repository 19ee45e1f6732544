#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/HeadlessPlatform.h"
#include "platform/ui/Application.h"

namespace velto {
namespace {

class RecordingDelegate final : public ApplicationDelegate {
 public:
  void applicationWillFinishLaunching() override {}
  void applicationDidFinishLaunching() override {}
  void applicationOpenURLs(const std::vector<Url>&) override {}
  void applicationOpenArguments(const std::vector<std::string>&) override {}
  bool applicationOpenUntitledFile() override { return false; }
  bool applicationShouldHandleReopen(bool) override { return false; }
  void applicationDidBecomeActive() override { log.emplace_back("active"); }
  bool applicationShouldTerminateAfterLastWindowClosed() override { return false; }
  void applicationWillTerminate() override {
    log.emplace_back("will terminate");
    application->terminate();
  }
  Application* application = nullptr;
  std::vector<std::string> log;
};

class ApplicationTest : public testing::Test {
 protected:
  ApplicationTest() {
    delegate.application = &application;
    application.setDelegate(delegate);
  }
  std::unique_ptr<Window> make() { return std::make_unique<Window>(application, Rect{{0, 0}, {10, 10}}, 0); }
  HeadlessPlatform headless;
  Application& application = headless.application();
  RecordingDelegate delegate;
};

TEST_F(ApplicationTest, BecomesActiveWithItsFirstKeyWindowOnly) {
  const auto first = make();
  const auto second = make();
  first->makeKeyAndOrderFront();
  second->makeKeyAndOrderFront();
  EXPECT_EQ(delegate.log, std::vector<std::string>{"active"});
  headless.windowSystem().focus(nullptr);
  EXPECT_FALSE(application.isActive());
  first->makeKeyAndOrderFront();
  EXPECT_EQ(delegate.log, (std::vector<std::string>{"active", "active"}));
}

TEST_F(ApplicationTest, TerminatesOnceThoughItsDelegateAsksAgain) {
  application.terminate();
  EXPECT_EQ(delegate.log, std::vector<std::string>{"will terminate"});
  EXPECT_TRUE(headless.windowSystem().isStopped());
}

}  // namespace
}  // namespace velto
