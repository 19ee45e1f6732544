#include <functional>
#include <future>
#include <thread>

#include <gmock/gmock.h>

#include "tests/layouts/LayoutTesting.h"
#include "tests/layouts/LayoutsApplication.h"

namespace velto {
namespace {

using test::golden;
using test::LayoutsApplication;
using test::replacing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kFile = "/data/Velto/Session.json";
constexpr const char* kA = "https://a.example/";
constexpr const char* kB = "https://b.example/";
using Pages = std::vector<std::string>;

VeltoSession goldenSession() {
  const Layout layout = test::goldenLayout();
  LayoutWindow window = layout.windows[0];
  window.thumbnail.reset();
  window.scroll.reset();
  window.noFocus.reset();
  return {1, layout.updatedAt, layout.id, layout.displays, {window}};
}

TEST(SessionStore, KeepsItsBytes) {
  MemoryFileManager files;
  SessionStore store(files, "/data/Velto");
  EXPECT_EQ(store.load(), std::nullopt);
  store.save(goldenSession());
  EXPECT_EQ(files.read(kFile), golden("session.json"));
  EXPECT_EQ(store.load(), goldenSession());
  store.save(VeltoSession());
  EXPECT_EQ(store.load(), VeltoSession());
}

TEST(SessionStore, ReadsNothingOrAWholeSession) {
  MemoryFileManager files;
  files.createDirectory("/data/Velto");
  const SessionStore store(files, "/data/Velto");
  const std::string whole = golden("session.json");
  const std::string bad[] = {"", whole.substr(0, whole.size() / 2),
                             replacing(whole, "\"schemaVersion\" : 1", "\"schemaVersion\" : 2"),
                             replacing(whole, "\"layoutID\" : \"", "\"layoutID\" : 7, \"was\" : \""),
                             replacing(whole, "\"savedAt\"", "\"sovedAt\"")};
  for (const std::string& bytes : bad) {
    files.writeAtomically(kFile, bytes);
    EXPECT_EQ(store.load(), std::nullopt) << bytes;
    EXPECT_EQ(files.read(kFile), bytes);
  }
  files.writeAtomically(kFile,
                        replacing(whole, "\"zoom\" : 1", "\"thumbnail\" : \"thumbs/a.png\", \"zoom\" : 1"));
  EXPECT_EQ(store.load(), goldenSession());
  files.writeAtomically(kFile, replacing(whole, "\"schemaVersion\" : 1", "\"schemaVersion\" : 0"));
  EXPECT_EQ(store.load()->windows, goldenSession().windows);
}

TEST(SessionStore, KeepsTheOldSessionWhenTheNewOneCannotBeWritten) {
  MemoryFileManager files;
  SessionStore store(files, "/data/Velto");
  store.save(goldenSession());
  for (int failing = 1; failing <= 2; ++failing) {
    files.failCall(failing, FileError::Kind::noSpace);
    EXPECT_THROW(store.save(VeltoSession()), FileError);
    files.stopFailing();
    EXPECT_EQ(store.load(), goldenSession());
  }
  VeltoSession broken = goldenSession();
  broken.windows[0].rect.x = -HUGE_VAL;
  EXPECT_THROW(store.save(broken), JsonError);
  EXPECT_EQ(store.load(), goldenSession());
}

/// The pages on disk; "(none)" when there is no session.
Pages recorded(LayoutsApplication& app) {
  const auto session = SessionStore(app.headless.files(), "/data/Velto").load();
  if (!session) return {"(none)"};
  Pages pages;
  for (const LayoutWindow& window : session->windows) pages.push_back(window.url);
  return pages;
}

TEST(SessionRecorder, WritesOnceAfterABurst) {
  LayoutsApplication app;
  app.start();
  HovrelPanel& panel = app.show(kA, Rect{{0, 500}, {300, 200}});
  for (int move = 0; move < 5; ++move) {
    app.headless.advance(0.2);
    panel.setFrameOrigin({100.0 * move, 500});
  }
  app.headless.advance(1.49);
  EXPECT_THAT(recorded(app), ElementsAre("(none)"));
  app.headless.advance(0.01);
  EXPECT_THAT(recorded(app), ElementsAre(kA));
  const auto session = SessionStore(app.headless.files(), "/data/Velto").load();
  EXPECT_EQ(session->windows[0].rect, (LayoutRect{400, 340, 300, 200}));
  EXPECT_TRUE(app.headless.loop().isIdle()) << "nothing more is to come";
}

TEST(SessionRecorder, WritesEveryChangeOfTheArrangement) {
  const struct {
    const char* what;
    std::function<void(LayoutsApplication&)> act;
  } cases[] = {
      {"opened", [](LayoutsApplication& app) { app.show(kB); }},
      {"closed", [](LayoutsApplication& app) { app.close(*app.panels()[0]); }},
      {"moved by hand",
       [](LayoutsApplication& app) {
         app.headless.windowSystem().moveByHand(*app.panels()[0], {{7, 500}, {300, 200}});
       }},
      {"pinned", [](LayoutsApplication& app) { app.delegate->toggleKeepOnTop(); }},
      {"another page", [](LayoutsApplication& app) { app.panels()[0]->webView->load({*Url::parse(kB)}); }},
  };
  for (const auto& c : cases) {
    LayoutsApplication app;
    app.start().show(kA, Rect{{0, 500}, {300, 200}});
    app.headless.advance(2);
    const std::string before = app.headless.files().read(kFile);
    c.act(app);
    app.headless.advance(2);
    EXPECT_NE(app.headless.files().read(kFile), before) << c.what;
  }
}

TEST(SessionRecorder, ReplacesARecordByAnEmptyOneOnlyWhenThePersonClosedEverything) {
  const struct {
    const char* what;
    /// What happens in a run that starts with one recorded window, and does not reopen it.
    std::function<void(LayoutsApplication&)> act;
    Pages recorded;
  } cases[] = {
      {"nothing ever opened", [](LayoutsApplication&) {}, {kA}},
      {"only a private window",
       [](LayoutsApplication& app) { app.close(app.show(kB, {.incognito = true})); },
       {kA}},
      {"another window", [](LayoutsApplication& app) { app.show(kB); }, {kB}},
      {"opened and closed", [](LayoutsApplication& app) { app.close(app.show(kB)); }, {}},
      {"opened, recorded and closed",
       [](LayoutsApplication& app) {
         HovrelPanel& panel = app.show(kB);
         app.headless.advance(2);
         app.close(panel);
       },
       {}},
      {"open, but without a page", [](LayoutsApplication& app) { app.show(kB).webView = nullptr; }, {kA}},
      {"the displays go right after a change",
       [](LayoutsApplication& app) { app.show(kB), app.setScreens({}); },
       {kB}},
      {"a change while the displays are gone",
       [](LayoutsApplication& app) { app.setScreens({}), app.show(kB); },
       {kA}},
      {"the displays were gone for a moment",
       [](LayoutsApplication& app) {
         app.show(kB);
         app.setScreens({});
         app.headless.advance(5);
         app.setScreens({LayoutsApplication::kMain});
         app.headless.advance(2);
         app.setScreens({});
       },
       {kB}},
      {"a change after the displays were gone",
       [](LayoutsApplication& app) {
         app.setScreens({});
         app.headless.advance(5);
         app.setScreens({LayoutsApplication::kMain});
         app.show(kB);
         app.headless.advance(2);
         app.setScreens({});
       },
       {kB}},
      {"turned on for what is there, which is nothing",
       [](LayoutsApplication& app) { EXPECT_TRUE(app.layouts->recorder().toggleRestoreWindowsOnLaunch()); },
       {}},
  };
  for (const auto& c : cases) {
    LayoutsApplication app;
    app.start().show(kA);
    app.quit();
    app.headless.defaults().set("restoreWindowsOnLaunch", false);
    app.start();
    ASSERT_THAT(app.windows(), IsEmpty());
    c.act(app);
    app.quit();
    EXPECT_EQ(recorded(app), c.recorded) << c.what;
  }
}

TEST(SessionRecorder, FitsTheWindowsToAnotherDisplayAndSaysSo) {
  LayoutsApplication app;
  app.start();
  for (const char* page : {kA, kB}) app.show(page, Rect{{800, 40}, {800, 1000}});
  app.quit();
  app.setScreens({LayoutsApplication::kRight});
  app.start();
  EXPECT_EQ(app.panels().size(), 2U);
  for (const HovrelPanel* panel : app.panels()) {
    EXPECT_EQ(LayoutsApplication::kRight.visibleFrame.intersection(panel->frame()), panel->frame());
  }
  EXPECT_THAT(app.toasts(), ElementsAre("Reopened 2 windows, fitted to this screen"));
}

TEST(SessionRecorder, WaitsForADisplayWithTheSession) {
  LayoutsApplication app;
  app.start().show(kA);
  app.quit();
  app.setScreens({});
  app.start();
  app.layouts->sessions().load()->restore();  // once more
  app.headless.advance(10);
  EXPECT_THAT(app.windows(), IsEmpty());
  app.quit();
  EXPECT_THAT(recorded(app), ElementsAre(kA)) << "it still waits";
  app.start();
  app.setScreens({LayoutsApplication::kMain});
  app.headless.advance(2);
  EXPECT_EQ(app.panels().size(), 1U);
  app.close(*app.panels()[0]);
  app.quit();
  EXPECT_THAT(recorded(app), IsEmpty());
}

TEST(SessionRecorder, KeepsWhatStoodBeforeTheDisplaysWent) {
  LayoutsApplication app;
  app.start();
  HovrelPanel& panel = app.show(kA, Rect{{700, 500}, {300, 200}});
  app.headless.advance(2);
  const std::string before = app.headless.files().read(kFile);
  app.setScreens({});
  app.headless.windowSystem().moveByHand(panel, {{0, 0}, {64, 64}});
  app.headless.advance(5);
  app.setScreens({LayoutsApplication::kMain});
  app.headless.advance(5);
  EXPECT_EQ(app.headless.files().read(kFile), before);
}

TEST(SessionRecorder, RemembersTheCurrentLayoutWhileItExists) {
  LayoutsApplication app;
  app.start().show(kA);
  const Layout work = app.manager().save("Work", app.headless.loop().now());
  app.headless.loop().drain();
  app.quit();
  app.headless.defaults().set("currentLayoutID", "another");
  app.start();
  EXPECT_EQ(app.manager().currentLayoutID(), work.id);
  app.quit();
  app.headless.defaults().set("currentLayoutID", "another");
  app.headless.files().remove("/data/Velto/Layouts");
  app.start();
  EXPECT_EQ(app.panels().size(), 1U);
  EXPECT_EQ(app.manager().currentLayoutID(), "another");
}

TEST(SessionRecorder, LeavesTheFileAloneInTestMode) {
  LayoutsApplication app;
  app.headless.environment().variables["HOVREL_UI_TEST_MODE"] = "1";
  app.start().show(kA);
  app.headless.advance(5);
  app.quit();
  EXPECT_THAT(recorded(app), ElementsAre("(none)"));
}

TEST(SessionRecorder, WritesInTheBackgroundAndAtTheEndAtOnce) {
  LayoutsApplication app;
  app.headless.backgroundQueue().hold(true);
  app.start();
  for (const char* page : {kA, kB, "https://c.example/"}) {
    app.show(page);
    app.headless.advance(2);
  }
  EXPECT_THAT(recorded(app), ElementsAre("(none)")) << "the main thread never writes";
  EXPECT_EQ(app.headless.backgroundQueue().heldTasks(), 1U) << "one write for all that wait";
  app.headless.backgroundQueue().runAll();
  EXPECT_THAT(recorded(app), ElementsAre(kA, kB, "https://c.example/"));

  app.close(*app.panels()[0]);
  app.headless.advance(2);
  AppDelegate& delegate = *app.delegate;
  app.show("https://d.example/");
  delegate.applicationWillTerminate();
  const Pages last{kB, "https://c.example/", "https://d.example/"};
  EXPECT_EQ(recorded(app), last) << "before the application goes";
  app.headless.backgroundQueue().runAll();
  app.close(*app.panels()[0]);
  app.headless.advance(5);
  delegate.applicationWillTerminate();
  EXPECT_EQ(recorded(app), last) << "nothing comes after the end";
}

TEST(SessionRecorder, IsNotStoppedByAWriteThatFails) {
  LayoutsApplication app;
  app.start().show(kA);
  app.headless.files().failAllCalls(FileError::Kind::noSpace);
  app.headless.advance(2);
  app.headless.files().stopFailing();
  EXPECT_THAT(recorded(app), ElementsAre("(none)"));
  app.show(kB);
  app.headless.advance(2);
  EXPECT_THAT(recorded(app), ElementsAre(kA, kB));
}

/// A disk on which a write takes until it is let go.
class SlowFiles : public FileManager {
 public:
  explicit SlowFiles(MemoryFileManager& files) : files_(files) {}
  std::promise<void> writing;
  std::promise<void> letGo;

  [[nodiscard]] std::string read(const Path& path) const override { return files_.read(path); }
  void writeAtomically(const Path& path, std::string_view bytes) override {
    if (!std::exchange(wrote_, true)) {
      writing.set_value();
      letGo.get_future().wait();
    }
    files_.writeAtomically(path, bytes);
  }
  void append(const Path&, std::string_view) override {}
  void createDirectory(const Path& path) override { files_.createDirectory(path); }
  void remove(const Path&) override {}
  void rename(const Path&, const Path&) override {}
  [[nodiscard]] std::vector<std::string> list(const Path& path) const override { return files_.list(path); }
  [[nodiscard]] std::optional<FileInfo> info(const Path& path) const override { return files_.info(path); }

 private:
  MemoryFileManager& files_;
  bool wrote_ = false;
};

struct ThreadEach : BackgroundQueue {
  void async(Task task) override { threads.emplace_back(std::move(task)); }
  std::vector<std::jthread> threads;
};

TEST(SessionWriter, WritesInOrderAndOnlyTheNewestOfThoseThatWait) {
  MemoryFileManager memory;
  SlowFiles files(memory);
  ThreadEach queue;
  SessionWriter writer(SessionStore(files, "/data"), queue);
  writer.write("first");
  files.writing.get_future().wait();
  for (const char* later : {"second", "third", "fourth"}) writer.write(later);
  EXPECT_LE(queue.threads.size(), 2U) << "a disk that hangs must not take all threads";
  auto finished = std::async(std::launch::async, [&] { writer.finish(); });
  EXPECT_EQ(finished.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
  files.letGo.set_value();
  finished.get();
  EXPECT_EQ(memory.read("/data/Session.json"), "fourth");
  queue.threads.clear();
  EXPECT_EQ(memory.read("/data/Session.json"), "fourth");
}

}  // namespace
}  // namespace velto
