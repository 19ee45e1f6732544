#include <optional>
#include <string>
#include <utility>

#include <gtest/gtest.h>
#include <stdlib.h>

#include "platform/foundation/Environment.h"

namespace velto {
namespace {

/// Sets a variable of the process, or takes it away, until the end of the scope.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : name_(name) {
    if (const char* before = ::getenv(name)) before_ = before;
    change(value);
  }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;
  ~ScopedVariable() { change(before_ ? before_->c_str() : nullptr); }

 private:
  void change(const char* value) const {
    if (value == nullptr) {
      ::unsetenv(name_);
    } else {
      ::setenv(name_, value, 1);
    }
  }

  const char* name_;
  std::optional<std::string> before_;
};

TEST(Environment, ReadsArgumentsAndFolders) {
  const ScopedVariable home("HOME", "/home/ann");
  const ScopedVariable data("XDG_DATA_HOME", "/data");
  const ScopedVariable config("XDG_CONFIG_HOME", "relative/config");
  const ScopedVariable cache("XDG_CACHE_HOME", nullptr);
  const ScopedVariable mode("HOVREL_UI_TEST_MODE", "1");
  const char* const arguments[] = {"velto", "a", ""};
  const Environment environment = readEnvironment(3, arguments);
  EXPECT_EQ(environment.arguments, (std::vector<std::string>{"a", ""}));
  EXPECT_EQ(environment.applicationSupportDirectory, "/data/Velto");
  EXPECT_EQ(environment.preferencesDirectory, "/home/ann/.config/Velto/Preferences");
  EXPECT_EQ(environment.cacheDirectory, "/home/ann/.cache/Velto");
  EXPECT_EQ(environment.temporaryDirectory, "/home/ann/.cache/Velto/Temporary");
  EXPECT_EQ(environment.documentsDirectory, std::nullopt);
  EXPECT_TRUE(environment.resourcesDirectory.is_absolute());
  EXPECT_TRUE(environment.resourcesDirectory.native().ends_with("/share/velto"));
  EXPECT_EQ(environment.variable("HOME"), "/home/ann");
  EXPECT_TRUE(environment.isTestMode());
}

TEST(Environment, FindsAHomeWithoutTheVariable) {
  const ScopedVariable home("HOME", nullptr);
  const ScopedVariable data("XDG_DATA_HOME", nullptr);
  const ScopedVariable mode("HOVREL_UI_TEST_MODE", "true");
  const Environment environment = readEnvironment(0, nullptr);
  EXPECT_TRUE(environment.applicationSupportDirectory.is_absolute());
  EXPECT_TRUE(environment.arguments.empty());
  EXPECT_FALSE(environment.isTestMode());
}

TEST(Environment, ReadsTheDocumentsFolder) {
  const std::pair<const char*, const char*> cases[] = {
      {"XDG_DOCUMENTS_DIR=\"$HOME/Documents\"", "/home/ann/Documents"},
      {"# c\nXDG_DOCUMENTS_DIR = \"$HOME/My Files/\" \r\nXDG_MUSIC_DIR=\"$HOME/M\"", "/home/ann/My Files"},
      {"XDG_DOCUMENTS_DIR=\"/mnt/d\"", "/mnt/d"},
      {"XDG_DOCUMENTS_DIR=\"$HOME/a\"\nXDG_DOCUMENTS_DIR=\"$HOME/b\"", "/home/ann/b"},
      {"XDG_DOCUMENTS_DIR=\"$HOME/a\"\nXDG_DOCUMENTS_DIR=\"b\"", "/home/ann/a"},
      {"XDG_DOCUMENTS_DIR=\"$HOME/a\\\"b\\$\"", "/home/ann/a\"b$"},
  };
  for (const auto& [text, expected] : cases)
    EXPECT_EQ(parseDocumentsDirectory(text, "/home/ann"), expected) << text;
  for (const char* text :
       {"", "#XDG_DOCUMENTS_DIR=\"$HOME/a\"", "XDG_DOCUMENTS_DIR=\"$HOME\"", "XDG_DOCUMENTS_DIR=\"$HOME/\"",
        "XDG_DOCUMENTS_DIR=\"$HOME/a/..\"", "XDG_DOCUMENTS_DIR=\"/home/ann/\"", "XDG_DOCUMENTS_DIR=$HOME/a",
        "XDG_DOCUMENTS_DIR=\"$HOMEX/a\"", "XDG_DOCUMENTS_DIR=\"$HOME/a", "XDG_DOCUMENTS_DIRS=\"$HOME/a\"",
        "XDG_DOCUMENTS_DIR=\"$HOME/a\"\nXDG_DOCUMENTS_DIR=\"$HOME/\""}) {
    EXPECT_EQ(parseDocumentsDirectory(text, "/home/ann"), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace velto
