#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "browsing/history/HistoryManager.h"
#include "platform/headless/HeadlessPlatform.h"
#include "tests/support/UrlSupport.h"

namespace velto {
namespace {

using test::url;

class HistoryManagerTest : public testing::Test {
 protected:
  HistoryManagerTest() {
    observer_ = headless_.notifications().observe(HistoryManager::kDidChange, [this] { ++notifications_; });
  }
  [[nodiscard]] std::vector<std::string> titles() const {
    std::vector<std::string> all;
    for (const HistoryEntry& entry : store_->load()) all.push_back(entry.title);
    return all;
  }
  int takeNotifications() {
    headless_.loop().drain();
    return std::exchange(notifications_, 0);
  }

  HeadlessPlatform headless_;
  std::shared_ptr<HistoryStore> store_ =
      std::make_shared<HistoryStore>(headless_.files(), "/data/Velto", "History.json", true);
  HistoryManager manager_{store_, headless_.platform().clock, headless_.platform().mainQueue,
                          headless_.backgroundQueue(), headless_.notifications()};
  int notifications_ = 0;
  Subscription observer_;
};

TEST_F(HistoryManagerTest, APageWithoutATitleIsCalledByItsHostOrAddress) {
  manager_.record(url("https://a.example/b"), "");
  manager_.record(url("about:c"), "");
  manager_.record(url("https://a.example/b"), "A");
  EXPECT_EQ(titles(), (std::vector<std::string>{"A", "about:c", "a.example"}));
  EXPECT_EQ(takeNotifications(), 3);
}

TEST_F(HistoryManagerTest, ChangesAreMadeInTheirOrderWithTheTimeOfTheCall) {
  headless_.backgroundQueue().hold(true);
  const WallTime first = headless_.platform().clock.now();
  manager_.record(url("https://a.example/"), "A");
  EXPECT_EQ(manager_.newestPage(), url("https://a.example/"));
  manager_.clear();
  EXPECT_EQ(manager_.newestPage(), std::nullopt);
  headless_.advance(60);
  manager_.record(url("https://b.example/"), "B");
  EXPECT_EQ(takeNotifications(), 0);
  EXPECT_FALSE(headless_.files().exists(store_->fileURL()));
  EXPECT_EQ(headless_.backgroundQueue().heldTasks(), 1U);
  headless_.backgroundQueue().runAll();
  EXPECT_EQ(takeNotifications(), 3);
  EXPECT_EQ(store_->load(),
            (std::vector<HistoryEntry>{{"https://b.example/", "B", {first.secondsSince1970 + 60}}}));
  EXPECT_EQ(manager_.newestPage(), url("https://b.example/"));
}

TEST_F(HistoryManagerTest, AFailedWriteIsToldOfToo) {
  manager_.record(url("https://a.example/"), "A");
  headless_.files().failAllCalls(FileError::Kind::noSpace);
  manager_.record(url("https://b.example/"), "B");
  manager_.clear();
  EXPECT_EQ(takeNotifications(), 3);
  headless_.files().stopFailing();
  EXPECT_EQ(titles(), std::vector<std::string>{"A"});
  manager_.clear();
  EXPECT_EQ(takeNotifications(), 1);
  EXPECT_EQ(headless_.files().read(store_->fileURL()), "[\n\n]");
}

struct ThreadEach final : BackgroundQueue {
  void async(Task task) override { threads.emplace_back(std::move(task)); }
  std::vector<std::jthread> threads;
};

TEST_F(HistoryManagerTest, ThreadsKeepTheOrder) {
  ThreadEach queue;
  HistoryManager manager(store_, headless_.platform().clock, headless_.platform().mainQueue, queue,
                         headless_.notifications());
  std::vector<std::string> expected;
  for (int number = 0; number < 200; ++number) {
    manager.record(url("https://example.com/" + std::to_string(number)), std::to_string(number));
    expected.insert(expected.begin(), std::to_string(number));
  }
  manager.finish();
  EXPECT_EQ(titles(), expected);
  queue.threads.clear();
  EXPECT_EQ(takeNotifications(), 200);
}

}  // namespace
}  // namespace velto
