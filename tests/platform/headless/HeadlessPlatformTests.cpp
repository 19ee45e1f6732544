#include <memory>
#include <utility>

#include <gtest/gtest.h>

#include "platform/headless/HeadlessPlatform.h"

namespace velto {
namespace {

TEST(HeadlessPlatform, HasThePersonsFoldersAndTheProgramsResources) {
  HeadlessPlatform headless;
  const Platform& platform = headless.platform();
  const auto type = [&](const std::filesystem::path& path) {
    const auto info = platform.files.info(path);
    return info ? std::optional(info->type) : std::nullopt;
  };
  EXPECT_EQ(type(*platform.environment.documentsDirectory), FileInfo::Type::directory);
  EXPECT_EQ(type(platform.environment.resourcesDirectory / "Welcome.html"), FileInfo::Type::file);
  EXPECT_EQ(type(platform.environment.applicationSupportDirectory), std::nullopt)
      << "the application makes it";
}

TEST(HeadlessPlatform, DefaultsAreAFileInMemory) {
  HeadlessPlatform headless;
  headless.defaults().set("key", true);
  const std::string file = headless.files().read("/config/Velto/Preferences/com.hovrel.extension.plist");
  EXPECT_NE(file.find("<key>key</key>"), std::string::npos);
}

TEST(HeadlessPlatform, TheEnvironmentMayBeChangedBeforeItIsRead) {
  HeadlessPlatform headless;
  EXPECT_FALSE(headless.platform().environment.isTestMode());
  headless.environment().variables["HOVREL_UI_TEST_MODE"] = "1";
  EXPECT_TRUE(headless.platform().environment.isTestMode());
}

TEST(HeadlessPlatform, WorkThatIsStillQueuedMayOwnWindowsAndWebViews) {
  HeadlessPlatform headless;
  auto window = std::make_unique<Window>(headless.application(), Rect{{0, 0}, {10, 10}}, 0);
  window->setContentView(headless.webEngine().makeWebView({}, {}));
  window->makeKeyAndOrderFront();
  headless.backgroundQueue().hold(true);
  headless.backgroundQueue().async([window = std::move(window)] {});
  headless.loop().after(1, [webView = headless.webEngine().makeWebView({}, {})] {});
}

}  // namespace
}  // namespace velto
