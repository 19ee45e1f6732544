#include <string>

#include <gtest/gtest.h>

#include "app/pages/DebugLog.h"
#include "tests/support/TestApplication.h"

namespace velto {
namespace {

using test::TestApplication;

constexpr const char* kFile = "/home/p/Documents/urlbar_debug.txt";

TEST(DebugLog, theStartReplacesTheFileAndEachMessageAddsALine) {
  TestApplication app;
  app.headless.files().writeAtomically(kFile, "from the last run\n");
  AppDelegate& delegate = app.start();
  delegate.debugLog().log("didFinish: https://a.example/");
  app.headless.advance(60);
  delegate.debugLog().log("");
  EXPECT_EQ(app.headless.files().read(kFile),
            "AppDelegate.applicationDidFinishLaunching called at 2024-01-02 03:04:05 +0000\n"
            "2024-01-02 03:04:05 +0000: [Nav] didFinish: https://a.example/\n"
            "2024-01-02 03:05:05 +0000: [Nav] \n");
}

TEST(DebugLog, keepsToOneLineAndToAnEnd) {
  TestApplication app;
  AppDelegate& delegate = app.make();
  delegate.debugLog().log("a\nb\r\tc\x7F“d”");
  EXPECT_EQ(app.headless.files().read(kFile), "2024-01-02 03:04:05 +0000: [Nav] a b  c “d”\n");
  const std::string endless(1U << 20U, 'x');
  delegate.debugLog().log(endless);
  EXPECT_LT(app.headless.files().read(kFile).size(), 10000U);
}

TEST(DebugLog, nothingHappensWithoutADocumentsFolder) {
  TestApplication app;
  app.headless.environment().documentsDirectory.reset();
  app.start().debugLog().log("hello");
  EXPECT_FALSE(app.headless.files().exists(kFile));
}

TEST(DebugLog, aDiskThatFailsKeepsNothingFromStarting) {
  TestApplication app;
  app.make();
  app.headless.files().failAllCalls(FileError::Kind::noSpace);
  app.headless.application().launch();
  app.delegate().debugLog().log("hello");
  app.settleDown();
  EXPECT_EQ(app.subsystems.countOf("extension: check"), 1);
}

}  // namespace
}  // namespace velto
