#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "layouts/LayoutFormat.h"
#include "layouts/LayoutStore.h"
#include "platform/foundation/PosixFileManager.h"
#include "platform/headless/MemoryFileManager.h"
#include "tests/layouts/LayoutTesting.h"
#include "tests/support/TemporaryFolder.h"

namespace velto {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;
using test::goldenLayout;
using test::makeLayout;

Names idsOf(const LayoutStore::Contents& contents) {
  Names ids;
  for (const Layout& each : contents.layouts) ids.push_back(each.id);
  return ids;
}

class LayoutStoreTest : public testing::Test {
 protected:
  void put(const std::string& file, const std::string& bytes) {
    files_.createDirectory(folder_ / "thumbs");
    files_.writeAtomically(folder_ / file, bytes);
  }
  [[nodiscard]] Names thumbnails() const { return files_.list(folder_ / "thumbs"); }
  [[nodiscard]] std::string index() const { return files_.read(folder_ / "index.txt"); }

  const fs::path folder_ = "/data/Velto/Layouts";
  MemoryFileManager files_;
  NotificationCenter notifications_;
  int posts_ = 0;
  Subscription subscription_ = notifications_.observe(kLayoutsDidChange, [this] { ++posts_; });
  LayoutStore store_{files_, notifications_, "/data/Velto"};
};

TEST_F(LayoutStoreTest, SavesAndFinds) {
  store_.refreshIndexIfStale();
  store_.deleteLayout("a");
  EXPECT_FALSE(files_.exists("/data")) << "nothing is made before it is needed";
  posts_ = 0;

  store_.save(goldenLayout());
  EXPECT_EQ(posts_, 1);
  EXPECT_EQ(files_.list(folder_), (Names{goldenLayout().id + ".veltolayout.json", "index.txt", "thumbs"}));
  EXPECT_EQ(store_.layoutWithId(goldenLayout().id), goldenLayout());
  EXPECT_EQ(store_.layoutWithSlug("Morning-DASHBOARDS"), goldenLayout());
  EXPECT_EQ(store_.layoutNamed("morning Dashboards"), goldenLayout());
  EXPECT_EQ(store_.layoutWithId("4e6d1b2c-8f10-4a55-9c3e-6a1b7d20f311"), std::nullopt);
  EXPECT_EQ(store_.layoutWithSlug("Morning dashboards"), std::nullopt);

  store_.save(makeLayout("old", "Café", 10));
  store_.save(makeLayout("new", "CAFE\u0301", 20));
  EXPECT_EQ(store_.layoutNamed("café")->id, "new") << "the last updated of two";
  EXPECT_EQ(idsOf(store_.loadAll()), (Names{goldenLayout().id, "new", "old"}));
}

TEST_F(LayoutStoreTest, ListsWhatItCannotRead) {
  put("b.veltolayout.json", encodeJson(makeLayout("same", "B", 5)));
  put("a.veltolayout.json", encodeJson(makeLayout("same", "A", 5)));
  put("z.veltolayout.json", R"({"schemaVersion":2})");
  put("veltolayout.json", encodeJson(makeLayout("later", "C", 9)));
  put("damaged.veltolayout.json", "{");
  put(".hidden.veltolayout.json", "{");
  put("notes.json", "{");
  files_.createDirectory(folder_ / "folder.veltolayout.json");
  const auto contents = store_.loadAll();
  EXPECT_EQ(idsOf(contents), (Names{"later", "same", "same"}));
  EXPECT_EQ(contents.layouts[1].name, "A") << "equal times in the order of the files";
  const auto file = [&](const char* name, const char* reason) {
    return UnreadableLayoutFile{Url::forFile((folder_ / name).native()), reason};
  };
  EXPECT_EQ(contents.unreadable,
            (std::vector{
                file("damaged.veltolayout.json",
                     "The file is not a readable layout (The data couldn’t be read because it isn’t in the "
                     "correct format.)"),
                file("folder.veltolayout.json", "The file could not be read."),
                file("z.veltolayout.json", "Saved by a newer version of Velto (format 2).")}));
}

TEST_F(LayoutStoreTest, ListsManyFilesInOrder) {
  Names expected;
  for (int number = 1000; number < 1500; ++number) {
    const std::string id = std::to_string(number);
    put(id + ".veltolayout.json", number % 100 == 0 ? "{" : encodeJson(makeLayout(id, id, 7)));
    if (number % 100 != 0) expected.push_back(id);
  }
  const auto contents = store_.loadAll();
  EXPECT_EQ(idsOf(contents), expected);
  ASSERT_EQ(contents.unreadable.size(), 5U);
  EXPECT_EQ(contents.unreadable[3].url, Url::forFile("/data/Velto/Layouts/1300.veltolayout.json"));
}

TEST_F(LayoutStoreTest, FindsEachOfSeveralLayoutsWithOneIdByTheWordOfTheIndex) {
  // By name, the order of the index is another than by the last update.
  put("1.veltolayout.json", encodeJson(makeLayout("same", "b", 1)));
  put("2.veltolayout.json", encodeJson(makeLayout("same", "B!", 1)));
  put("3.veltolayout.json", encodeJson(makeLayout("same", "A", 9)));
  store_.refreshIndexIfStale();
  EXPECT_EQ(index(), "same\tA\ta\t0\t9\t\nsame\tb\tb\t0\t1\t\nsame\tB!\tb-2\t0\t1\t\n");
  const std::vector<std::pair<const char*, const char*>> words = {{"a", "A"}, {"b", "b"}, {"b-2", "B!"}};
  for (const auto& [word, name] : words) EXPECT_EQ(store_.layoutWithSlug(word)->name, name) << word;
}

TEST_F(LayoutStoreTest, NeverRemovesFolders) {
  put("thumbs/a-1.png", "png");
  files_.createDirectory(folder_ / "thumbs/a-folder/full");
  files_.createDirectory(folder_ / "b.veltolayout.json/full");
  store_.deleteLayout("a");
  store_.deleteLayout("b");
  store_.removeAllThumbnails();
  EXPECT_EQ(thumbnails(), Names{"a-folder"});
  EXPECT_TRUE(files_.exists(folder_ / "thumbs/a-folder/full"));
  EXPECT_TRUE(files_.exists(folder_ / "b.veltolayout.json/full"));
}

TEST_F(LayoutStoreTest, PutsPicturesIntoOneLayoutOnly) {
  store_.save(makeLayout("b", "B", 1));
  Layout layout = makeLayout("a", "A", 1, {"1", "2"});
  store_.save(layout);
  posts_ = 0;
  const std::string path = store_.writeThumbnail("png", "a", "2");
  const std::string lost = store_.writeThumbnail("png", "a", "closed");
  const int before = files_.callCount();
  store_.setThumbnails("a", {{"2", path}, {"closed", lost}});
  EXPECT_LE(files_.callCount() - before, 6) << "the other layouts are not read";
  layout.windows[1].thumbnail = path;
  EXPECT_EQ(store_.layoutWithId("a"), layout);
  EXPECT_EQ(thumbnails(), Names{"a-2.png"}) << "nobody would ever show the other";
  EXPECT_EQ(posts_, 1);
  EXPECT_THROW(store_.setThumbnails("gone", {{"2", path}}), FileError);
  EXPECT_THROW(store_.setThumbnails("../a", {{"2", path}}), LayoutStoreError);
}

TEST_F(LayoutStoreTest, PrunesThePicturesThatNoLayoutNames) {
  for (const char* name : {"a-1.png", "a-2.png", "a-b-1.png", "a-x.png", "a-n-1.png", "b-1.png", "other"}) {
    put(std::string("thumbs/") + name, "png");
  }
  put("a-b.veltolayout.json", encodeJson(makeLayout("a-b", "", 1, {"a-b-1"})));
  put("b.veltolayout.json", encodeJson(makeLayout("b", "", 1, {"a-x"})));
  put("a-n.veltolayout.json", R"({"schemaVersion":2})");
  store_.save(makeLayout("a", "", 1, {"a-2"}));
  EXPECT_EQ(thumbnails(), (Names{"a-2.png", "a-b-1.png", "a-n-1.png", "a-x.png", "b-1.png", "other"}));
  store_.deleteLayout("a");
  EXPECT_EQ(thumbnails(), (Names{"a-b-1.png", "a-n-1.png", "a-x.png", "b-1.png", "other"}));
  EXPECT_EQ(posts_, 2);
}

TEST_F(LayoutStoreTest, KeepsAnIndex) {
  Layout focus = makeLayout("1", "focus\ton\r\nme", 99.5);
  focus.displays = {{"1", "Left\tone", {}, {}, 1, true}, {"2", "Right", {}, {}, 1, false}};
  focus.windows.resize(2);
  put("1.veltolayout.json", encodeJson(makeLayout("1", "", 0)));
  store_.save(focus);
  store_.save(makeLayout("2", "Zoo", 2));
  store_.save(makeLayout("3", "Äpfel", -1.5));
  EXPECT_EQ(index(),
            "3\tÄpfel\tapfel\t0\t-2\t\n"
            "1\tfocus on  me\tfocus-on-me\t2\t99\tLeft one, Right\n"
            "2\tZoo\tzoo\t0\t2\t\n");

  const std::string expected = index();
  const auto written = files_.info(folder_ / "index.txt");
  store_.refreshIndexIfStale();
  EXPECT_EQ(files_.info(folder_ / "index.txt"), written);
  put("index.txt", "stale");
  posts_ = 0;
  store_.refreshIndexIfStale();
  EXPECT_EQ(index(), expected);
  EXPECT_EQ(posts_, 0);
  for (const char* id : {"1", "2", "3"}) store_.deleteLayout(id);
  EXPECT_EQ(index(), "");
}

TEST_F(LayoutStoreTest, RefusesUnsafeIdentifiers) {
  put("../outside.veltolayout.json", "mine");
  for (const std::string& id :
       {std::string("../outside"), std::string(".."), std::string(), std::string(129, 'a')}) {
    try {
      store_.save(makeLayout(id, "", 1));
      ADD_FAILURE() << id;
    } catch (const LayoutStoreError& error) {
      EXPECT_STREQ(error.what(), "That layout has an identifier Velto cannot safely write to disk.");
    }
    store_.deleteLayout(id);
  }
  EXPECT_THROW(store_.writeThumbnail("png", "../../a", "1"), LayoutStoreError);
  EXPECT_THROW(store_.writeThumbnail("png", "a", "/../../../x"), LayoutStoreError);
  EXPECT_EQ(files_.read("/data/Velto/outside.veltolayout.json"), "mine");
  EXPECT_EQ(files_.list("/data/Velto"), (Names{"Layouts", "outside.veltolayout.json"}));
}

/// Whichever call to the disk fails, the old layout is there or the new one, and the pictures that it names.
TEST(LayoutStoreFailures, KeepTheOldLayoutOrTheNewOne) {
  const Layout oldA = makeLayout("a", "old", 1, {"a-1"});
  const Layout newA = makeLayout("a", "new", 2, {"a-2"});
  const Layout b = makeLayout("a-b", "b", 1, {"a-b-1"});
  bool failed = true;
  int failing = 1;
  for (; failed; ++failing) {
    MemoryFileManager files;
    NotificationCenter notifications;
    LayoutStore store(files, notifications, "/data");
    const auto hasPicture = [&](const char* name) {
      return files.exists(std::string("/data/Layouts/thumbs/") + name + ".png");
    };
    for (const Layout& each : {oldA, b}) {
      store.writeThumbnail("png", each.id, "1");
      store.save(each);
    }
    const int before = files.callCount();
    files.failCall(failing, FileError::Kind::noSpace);
    bool threw = false;
    try {
      store.writeThumbnail("png", "a", "2");
      store.save(newA);
    } catch (const FileError&) {
      threw = true;
    }
    failed = files.callCount() - before >= failing;
    files.stopFailing();
    const auto a = store.layoutWithId("a");
    EXPECT_TRUE(a == oldA || (a == newA && !threw)) << failing;
    EXPECT_TRUE(hasPicture(a == newA ? "a-2" : "a-1")) << failing;
    EXPECT_EQ(store.layoutWithId("a-b"), b) << failing;
    EXPECT_TRUE(hasPicture("a-b-1")) << failing;
    store.refreshIndexIfStale();
    EXPECT_NE(files.read("/data/Layouts/index.txt").find("a-b\tb\tb\t1\t1\t"), std::string::npos) << failing;
  }
  EXPECT_GT(failing, 11);
}

TEST_F(LayoutStoreTest, DeletesAndCleansUpAsFarAsTheDiskAllows) {
  for (int failing = 1; failing <= 12; ++failing) {
    store_.writeThumbnail("png", "a", "1");
    store_.save(makeLayout("a", "A", 1, {"a-1"}));
    files_.failCall(failing);
    bool threw = false;
    try {
      store_.deleteLayout("a");
    } catch (const FileError&) {
      threw = true;
    }
    files_.stopFailing();
    EXPECT_TRUE(!threw || (store_.layoutWithId("a") && thumbnails() == Names{"a-1.png"})) << failing;

    store_.save(makeLayout("a", "A", 1, {"a-1"}));
    files_.failCall(failing);
    EXPECT_NO_THROW(store_.removeAllThumbnails());
    files_.stopFailing();
    EXPECT_TRUE(store_.layoutWithId("a")) << failing;
  }
}

/// With a folder beside the application's that is none of its business.
class LayoutLinksTest : public testing::Test {
 protected:
  LayoutLinksTest() {
    fs::create_directories(root_.path / "outside");
    fs::create_directories(folder_);
    std::ofstream(root_.path / "outside/a-1.png") << "mine";
    std::ofstream(root_.path / "outside/a.veltolayout.json") << encodeJson(makeLayout("a", "mine", 1));
  }
  [[nodiscard]] std::string outside(const char* name) const {
    return files_.read(root_.path / "outside" / name);
  }

  PosixFileManager files_;
  NotificationCenter notifications_;
  const test::TemporaryFolder root_;
  const fs::path folder_ = root_.path / "app/Layouts";
  LayoutStore store_{files_, notifications_, root_.path / "app"};
};

TEST_F(LayoutLinksTest, ALinkInPlaceOfALayoutIsReplaced) {
  fs::create_symlink("../../outside/a.veltolayout.json", folder_ / "a.veltolayout.json");
  EXPECT_EQ(store_.layoutWithId("a")->name, "mine");
  store_.save(makeLayout("a", "new", 2));
  EXPECT_EQ(store_.layoutWithId("a")->name, "new");
  EXPECT_EQ(files_.info(folder_ / "a.veltolayout.json")->type, FileInfo::Type::file);

  fs::create_symlink("../../outside/a.veltolayout.json", folder_ / "b.veltolayout.json");
  store_.deleteLayout("b");
  EXPECT_FALSE(files_.exists(folder_ / "b.veltolayout.json"));
  EXPECT_EQ(outside("a.veltolayout.json"), encodeJson(makeLayout("a", "mine", 1)));
}

TEST_F(LayoutLinksTest, BehindALinkedThumbnailFolderNothingIsTouched) {
  fs::create_directory_symlink("../../outside", folder_ / "thumbs");
  store_.save(makeLayout("a", "new", 2));
  EXPECT_THROW(store_.writeThumbnail("png", "a", "1"), FileError);
  store_.removeAllThumbnails();
  store_.deleteLayout("a");
  EXPECT_EQ(files_.list(root_.path / "outside"), (Names{"a-1.png", "a.veltolayout.json"}));
  EXPECT_EQ(outside("a-1.png"), "mine");
}

TEST_F(LayoutLinksTest, ALinkedThumbnailIsReplacedOrRemoved) {
  fs::create_directory(folder_ / "thumbs");
  for (const char* name : {"a-1.png", "a-2.png"}) {
    fs::create_symlink("../../../outside/a-1.png", folder_ / "thumbs" / name);
  }
  store_.writeThumbnail("png", "a", "1");
  store_.save(makeLayout("a", "", 1, {"a-1"}));
  EXPECT_EQ(files_.list(folder_ / "thumbs"), Names{"a-1.png"});
  EXPECT_EQ(outside("a-1.png"), "mine");
}

}  // namespace
}  // namespace velto
