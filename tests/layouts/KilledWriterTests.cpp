#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <random>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "layouts/LayoutIndex.h"
#include "layouts/LayoutStore.h"
#include "layouts/SessionStore.h"
#include "platform/foundation/PosixFileManager.h"
#include "tests/layouts/LayoutTesting.h"
#include "tests/support/TemporaryFolder.h"

namespace velto {
namespace {

using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

constexpr int kKills = 1000;
constexpr std::chrono::seconds kPatience{20};

/// One state of everything that is written. States differ in length, so that halves of two do not fit
/// together.
struct Arrangement {
  Layout layout;
  VeltoSession session;
  std::string picture;
};

Arrangement arrangement(const std::string& name, std::size_t windows) {
  Arrangement made{test::goldenLayout(), {}, {}};
  LayoutWindow window = made.layout.windows[0];
  window.thumbnail = "thumbs/" + made.layout.id + "-picture.png";
  window.title = name;
  made.layout.name = name;
  made.layout.windows.assign(windows, window);
  window.thumbnail.reset();
  made.session = {1, made.layout.updatedAt, name, made.layout.displays, {windows, window}};
  made.picture.assign(1000 * windows, name.front());
  return made;
}

/// A folder of its own with the stores of a program that starts anew each time.
class Folder {
 public:
  void write(const Arrangement& state) {
    LayoutStore store(files_, notifications_, root_);
    store.writeThumbnail(state.picture, state.layout.id, "picture");
    store.save(state.layout);
    SessionStore(files_, root_).save(state.session);
  }

  /// Whether each file is that of one of the states, as a whole.
  void expectOneOf(const Arrangement& a, const Arrangement& b) const {
    NotificationCenter notifications;
    PosixFileManager files;
    const auto stored = LayoutStore(files, notifications, root_).loadAll();
    ASSERT_TRUE(stored.unreadable.empty()) << stored.unreadable[0].reason;
    ASSERT_EQ(stored.layouts.size(), 1U);
    EXPECT_TRUE(stored.layouts[0] == a.layout || stored.layouts[0] == b.layout);
    const auto session = SessionStore(files, root_).load();
    EXPECT_TRUE(session == a.session || session == b.session);
    const std::string picture = files.read(root_ / "Layouts" / a.layout.windows[0].thumbnail.value());
    EXPECT_TRUE(picture == a.picture || picture == b.picture);
    const std::string index = files.read(root_ / "Layouts" / "index.txt");
    EXPECT_TRUE(index == layoutIndex({a.layout}) || index == layoutIndex({b.layout})) << index;
  }

  /// Files that a killed writer had not put into their places yet.
  [[nodiscard]] std::ptrdiff_t unfinished() const {
    return std::count_if(fs::recursive_directory_iterator(root_), fs::recursive_directory_iterator(),
                         [](const fs::directory_entry& entry) {
                           return entry.path().filename().native().starts_with(".velto-");
                         });
  }

 private:
  const test::TemporaryFolder folder_;
  const fs::path root_ = folder_.path;
  PosixFileManager files_;
  NotificationCenter notifications_;
};

/// Writes both in turn, in a process of its own, until that is killed after this time.
void writeUntilKilled(Folder& folder, const Arrangement& a, const Arrangement& b,
                      std::chrono::microseconds after) {
  int started[2] = {-1, -1};
  ASSERT_EQ(::pipe(started), 0);
  const pid_t writer = ::fork();
  ASSERT_GE(writer, 0);
  if (writer == 0) {
    try {
      ::close(started[1]);  // which tells that it runs
      for (;;) {
        folder.write(a);
        folder.write(b);
      }
    } catch (...) {
      ::_exit(1);
    }
  }
  ::close(started[1]);
  char nothing = 0;
  EXPECT_EQ(::read(started[0], &nothing, 1), 0);
  ::close(started[0]);
  std::this_thread::sleep_for(after);
  ::kill(writer, SIGKILL);
  int status = 0;
  ASSERT_EQ(::waitpid(writer, &status, 0), writer);
  ASSERT_TRUE(WIFSIGNALED(status)) << "the writer failed by itself";
}

TEST(KilledWriter, LeavesTheWholeOldOrTheWholeNewFiles) {
  const auto end = Clock::now() + kPatience;
  const Arrangement a = arrangement("Morning", 5);
  const Arrangement b = arrangement("Evening dashboards", 40);
  Folder folder;
  folder.write(a);
  std::mt19937 random(7);
  std::uniform_int_distribution<int> microseconds(0, 8000);
  int done = 0;
  for (; done < kKills && Clock::now() < end && !HasFailure(); ++done) {
    writeUntilKilled(folder, a, b, std::chrono::microseconds(microseconds(random)));
    folder.expectOneOf(a, b);
  }
  if (done >= 100) {
    EXPECT_GT(folder.unfinished(), 0) << "no kill fell into a write";
  }
  folder.write(a);
  folder.expectOneOf(a, a);
}

}  // namespace
}  // namespace velto
