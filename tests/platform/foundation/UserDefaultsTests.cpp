#include <string>

#include <gtest/gtest.h>

#include "platform/foundation/UserDefaults.h"
#include "platform/headless/MemoryFileManager.h"

namespace velto {
namespace {

using Dictionary = PropertyList::Dictionary;

class UserDefaultsTest : public testing::Test {
 protected:
  [[nodiscard]] Dictionary onDisk() const {
    const auto contents = readPropertyList(files_.read(file_));
    return contents ? *contents->as<Dictionary>() : Dictionary{{"unreadable", true}};
  }

  void writeAsAnother(const PropertyList& value) { writeBytesAsAnother(writePropertyList(value)); }
  void writeBytesAsAnother(const std::string& bytes) {
    files_.createDirectory(file_.parent_path());
    files_.writeAtomically(file_, bytes);
  }

  MemoryFileManager files_;
  const std::filesystem::path file_ = "/config/Velto/Preferences/velto.plist";
  UserDefaults defaults_{files_, file_};
};

TEST_F(UserDefaultsTest, KeepsValuesAcrossRuns) {
  EXPECT_EQ(defaults_.value("a"), std::nullopt);
  defaults_.set("a", 1);
  defaults_.set("b", "text");
  defaults_.remove("a");
  defaults_.remove("missing");
  EXPECT_EQ(onDisk(), (Dictionary{{"b", "text"}}));
  EXPECT_EQ(UserDefaults(files_, file_).string("b"), "text");
  defaults_.removeAll();
  EXPECT_FALSE(files_.exists(file_));
  EXPECT_EQ(defaults_.string("b"), std::nullopt);
}

TEST_F(UserDefaultsTest, ReadsEachType) {
  writeAsAnother(Dictionary{{"flag", true},
                            {"one", 1},
                            {"two", 2},
                            {"half", 0.5},
                            {"text", "1"},
                            {"date", WallTime{5}},
                            {"dictionary", Dictionary{{"k", 1}}}});
  for (const char* key : {"flag", "one"}) EXPECT_EQ(defaults_.boolean(key), true) << key;
  for (const char* key : {"two", "half", "text", "date", "dictionary", "missing"}) {
    EXPECT_EQ(defaults_.boolean(key), std::nullopt) << key;
  }
  EXPECT_EQ(defaults_.string("flag"), "1");
  EXPECT_EQ(defaults_.string("half"), "0.5");
  EXPECT_EQ(defaults_.string("date"), std::nullopt);
  EXPECT_EQ(defaults_.date("date"), WallTime{5});
  EXPECT_EQ(defaults_.date("one"), std::nullopt);
  EXPECT_EQ(defaults_.dictionary("one"), Dictionary{});
}

TEST_F(UserDefaultsTest, KeepsEditsOfOtherPrograms) {
  defaults_.set("mine", 1);
  writeAsAnother(Dictionary{{"theirs", 2}, {"mine", 1}});
  EXPECT_EQ(defaults_.value("theirs"), std::nullopt) << "looked at before a change only";
  defaults_.set("more", 3);
  EXPECT_EQ(onDisk(), (Dictionary{{"mine", 1}, {"more", 3}, {"theirs", 2}}));

  writeAsAnother(Dictionary{{"theirs", 4}});
  defaults_.set("mine", 5);
  EXPECT_EQ(onDisk(), (Dictionary{{"mine", 5}, {"theirs", 4}}));
  EXPECT_EQ(defaults_.value("more"), std::nullopt);
}

TEST_F(UserDefaultsTest, FollowsALinkAndSeesChangesBehindIt) {
  writeAsAnother(Dictionary{{"a", 1}});
  files_.rename(file_, "/real.plist");
  files_.makeLink(file_, "/real.plist");
  EXPECT_EQ(defaults_.value("a"), PropertyList(1));
  files_.writeAtomically("/real.plist", writePropertyList(Dictionary{{"a", 2}}));
  defaults_.set("b", 3);
  EXPECT_EQ(onDisk(), (Dictionary{{"a", 2}, {"b", 3}}));
}

TEST_F(UserDefaultsTest, MovesADamagedFileAside) {
  writeBytesAsAnother("damaged");
  EXPECT_EQ(defaults_.value("a"), std::nullopt);
  EXPECT_EQ(files_.read(file_.native() + ".damaged"), "damaged");
  defaults_.set("a", 1);
  writeAsAnother(PropertyList("no dictionary"));
  defaults_.set("b", 2);
  EXPECT_EQ(onDisk(), (Dictionary{{"b", 2}}));
  EXPECT_EQ(files_.read(file_.native() + ".damaged"), "damaged");
  EXPECT_TRUE(files_.exists(file_.native() + ".damaged-2"));
}

TEST_F(UserDefaultsTest, AFailedWriteIsMadeUpForByTheNext) {
  defaults_.set("a", 1);
  files_.failAllCalls(FileError::Kind::noSpace);
  defaults_.set("b", 2);
  defaults_.remove("a");
  files_.stopFailing();
  EXPECT_EQ(defaults_.value("b"), PropertyList(2));
  EXPECT_EQ(defaults_.value("a"), std::nullopt);
  EXPECT_EQ(onDisk(), (Dictionary{{"a", 1}}));
  writeAsAnother(Dictionary{{"a", 1}, {"theirs", 3}});
  defaults_.set("c", 4);
  EXPECT_EQ(onDisk(), (Dictionary{{"b", 2}, {"c", 4}, {"theirs", 3}}));
}

TEST_F(UserDefaultsTest, WritesNothingWhenNothingChanges) {
  defaults_.set("a", 1);
  const auto before = files_.info(file_);
  defaults_.set("a", 1);
  defaults_.remove("b");
  EXPECT_EQ(files_.info(file_), before);
}

// Whatever call fails, the file holds what it held or more, also when it could not be read or moved aside.
TEST(UserDefaultsFaults, NoFailureLosesAnything) {
  const std::filesystem::path file = "/p/velto.plist";
  for (const std::string& before : {writePropertyList(Dictionary{{"old", 1}}), std::string("damaged")}) {
    for (int failing = 1; failing < 12; ++failing) {
      MemoryFileManager files;
      files.createDirectory("/p");
      files.writeAtomically(file, before);
      UserDefaults defaults(files, file);
      files.failCall(failing);
      defaults.set("new", 2);
      EXPECT_EQ(defaults.value("new"), PropertyList(2)) << failing;
      defaults.set("newer", 3);
      files.stopFailing();
      defaults.set("newest", 4);

      Dictionary expected = {{"new", 2}, {"newer", 3}, {"newest", 4}};
      if (before != "damaged") expected.emplace("old", 1);
      EXPECT_EQ(readPropertyList(files.read(file)), PropertyList(expected)) << failing;
      if (before != "damaged") continue;
      EXPECT_EQ(files.read(file.native() + ".damaged"), before) << failing;
    }
  }
}

}  // namespace
}  // namespace velto
