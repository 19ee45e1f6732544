#include <fstream>

#include <sys/stat.h>

#include "handoff/HandoffError.h"
#include "handoff/RuntimeDirectory.h"
#include "tests/handoff/HandoffTesting.h"

namespace velto {
namespace {

class RuntimeDirectoryTest : public testing::HandoffTest {
 protected:
  [[nodiscard]] std::filesystem::path folder() const { return root() / "velto"; }

  [[nodiscard]] std::string refusal(uid_t owner = ::geteuid()) const {
    try {
      return "opened " + RuntimeDirectory::open(root().c_str(), owner).path();
    } catch (const HandoffError& error) {
      return error.what();
    }
  }
};

TEST(RuntimeDirectory, whereItIs) {
  for (const char* none : {static_cast<const char*>(nullptr), "", "run/user"}) {
    EXPECT_EQ(RuntimeDirectory::pathFor(none, 1234), "/tmp/velto-1234");
  }
  EXPECT_EQ(RuntimeDirectory::pathFor("/run/user/1234/", 1234), "/run/user/1234/velto");
}

TEST_F(RuntimeDirectoryTest, isMadePrivateAndOpenedAgain) {
  EXPECT_EQ(refusal(), "opened " + folder().string());
  struct stat status {};
  ASSERT_EQ(::stat(folder().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0700U);
  EXPECT_EQ(refusal(), "opened " + folder().string());
}

TEST_F(RuntimeDirectoryTest, openToOthersIsRefused) {
  std::filesystem::create_directory(folder());
  for (const mode_t mode : {0755U, 0710U, 0702U}) {
    ASSERT_EQ(::chmod(folder().c_str(), mode), 0);
    const std::string text = refusal();
    EXPECT_NE(text.find("is open to other users (mode 0"), std::string::npos) << text;
    EXPECT_NE(text.find("chmod 700 " + folder().string()), std::string::npos) << text;
  }
}

TEST_F(RuntimeDirectoryTest, aXdgRuntimeDirThatOthersMayWriteIsRefused) {
  ASSERT_EQ(::chmod(root().c_str(), 0722), 0);
  EXPECT_EQ(refusal(), "XDG_RUNTIME_DIR, " + root().string() +
                           ", can be written by other users (mode 0722); close it with: chmod 700 " +
                           root().string());
  EXPECT_FALSE(std::filesystem::exists(folder()));
  ASSERT_EQ(::chmod(root().c_str(), 0755), 0);
  EXPECT_EQ(refusal(), "opened " + folder().string());
}

TEST_F(RuntimeDirectoryTest, anythingButAFolderIsRefused) {
  for (const char* target : {root().c_str(), "nowhere"}) {
    std::filesystem::create_symlink(target, folder());
    EXPECT_EQ(refusal(), folder().string() + " is a symbolic link; remove it and try again");
    std::filesystem::remove(folder());
  }
  std::ofstream(folder()) << "x";
  EXPECT_EQ(refusal(), folder().string() + " is not a folder; remove it and try again");
}

TEST_F(RuntimeDirectoryTest, somebodyElsesIsRefused) {
  const std::string uid = std::to_string(::geteuid());
  EXPECT_EQ(refusal(::geteuid() + 1), "XDG_RUNTIME_DIR, " + root().string() +
                                          ", belongs to another user (uid " + uid +
                                          "); run this as that user, or unset the variable");
  EXPECT_FALSE(std::filesystem::exists(folder()));

  if (::geteuid() != 0) GTEST_SKIP() << "only root can give a folder away";
  std::filesystem::create_directory(folder());
  ASSERT_EQ(::chown(folder().c_str(), 1, 1), 0);
  EXPECT_EQ(refusal(), "the folder " + folder().string() +
                           " belongs to another user (uid 1); have it removed and try again");
}

}  // namespace
}  // namespace velto
