#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/headless/HeadlessBackgroundQueue.h"
#include "platform/headless/MemoryFileManager.h"
#include "platform/headless/VirtualLoop.h"
#include "platform/web/CookieDates.h"
#include "platform/web/CookieRules.h"

namespace velto {
namespace {

constexpr const char* kFile = "/cookie-dates.json";

HttpCookie cookie(const std::string& name, std::optional<WallTime> created = {}) {
  HttpCookie made;
  made.name = name;
  made.value = "v";
  made.domain = ".a.example";
  made.created = created;
  return made;
}

class CookieDatesTest : public ::testing::Test {
 protected:
  MemoryFileManager files;
  VirtualLoop loop;
  HeadlessBackgroundQueue background;
  CookieDates dates{files, loop, background, kFile};

  static std::vector<HttpCookie> dated(CookieDates& from, std::vector<HttpCookie> jar) {
    from.addTo(jar);
    return jar;
  }
};

TEST_F(CookieDatesTest, outliveTheProgramForAsLongAsTheCookieDoes) {
  const std::vector<HttpCookie> known = {cookie("a", WallTime{1700000000.125}), cookie("b", WallTime{-1})};
  for (const HttpCookie& each : known) dates.remember(each);
  dates.remember(cookie("never dated"));
  HttpCookie elsewhere = cookie("a");
  elsewhere.path = "/x";
  EXPECT_EQ(dated(dates, {known[0], elsewhere, cookie("b")}), (std::vector{known[0], elsewhere, known[1]}));

  loop.advance(1);
  CookieDates later(files, loop, background, kFile);
  later.remember(cookie("a"));
  EXPECT_EQ(dated(later, {cookie("a"), elsewhere}), (std::vector{known[0], elsewhere})) << "b is gone";
  EXPECT_EQ(dated(later, {cookie("a"), cookie("b")}), (std::vector{known[0], cookie("b")}));
  loop.advance(1);
  EXPECT_EQ(files.read(kFile).find("\"b\""), std::string::npos);
}

TEST_F(CookieDatesTest, areWrittenOnceForManyAndInTheBackground) {
  background.hold(true);
  const int before = files.callCount();
  for (int i = 0; i < 1000; ++i) dates.remember(cookie(std::to_string(i), WallTime{1}));
  const int reading = files.callCount();
  EXPECT_LE(reading - before, 1) << "the file is looked for once";
  loop.advance(10);
  EXPECT_EQ(background.heldTasks(), 1);
  EXPECT_EQ(files.callCount(), reading);
  background.runAll();
  EXPECT_EQ(files.callCount(), reading + 1);
}

TEST_F(CookieDatesTest, areWrittenAtTheEndWhateverTheBackgroundDropped) {
  for (const bool isUnderWay : {false, true}) {
    files.writeAtomically(kFile, "");
    {
      CookieDates ending(files, loop, background, kFile);
      background.hold(true);
      ending.remember(cookie("a", WallTime{5}));
      if (isUnderWay) loop.advance(1);
    }
    background.discardAll();
    CookieDates later(files, loop, background, kFile);
    EXPECT_EQ(dated(later, {cookie("a")}), (std::vector{cookie("a", WallTime{5})})) << isUnderWay;
  }
}

TEST_F(CookieDatesTest, doWithoutAFileThatIsDamagedOrCannotBeWritten) {
  for (const char* text : {"", "{", "[]", "{\"cookies\":[{\"name\":\"a\"}]}", "{\"cookies\":[7]}"}) {
    files.writeAtomically(kFile, text);
    CookieDates fresh(files, loop, background, kFile);
    EXPECT_EQ(dated(fresh, {cookie("a")}), std::vector{cookie("a")}) << text;
  }
  files.failAllCalls();
  dates.remember(cookie("a", WallTime{1}));
  loop.advance(1);
  EXPECT_EQ(dated(dates, {cookie("a")}), (std::vector{cookie("a", WallTime{1})}));
}

TEST(CookieRules, refuseWhatWouldBreakAHeader) {
  const auto accepts = [](const auto& change) {
    HttpCookie changed = cookie("n");
    change(changed);
    return mayBeStored(changed);
  };
  EXPECT_TRUE(accepts([](HttpCookie& c) { c.value = "a=b, \"c\" d|ü"; }));
  EXPECT_TRUE(accepts([](HttpCookie& c) { c.value = c.path = ""; }));
  for (const char* bad : {"\r", "\n", "\t", "\x7F", ";", "\xFF"}) {
    EXPECT_FALSE(accepts([&](HttpCookie& c) { c.name += bad; })) << bad;
    EXPECT_FALSE(accepts([&](HttpCookie& c) { c.value += bad; })) << bad;
    EXPECT_FALSE(accepts([&](HttpCookie& c) { c.domain += bad; })) << bad;
    EXPECT_FALSE(accepts([&](HttpCookie& c) { c.path += bad; })) << bad;
  }
  EXPECT_FALSE(accepts([](HttpCookie& c) { c.value += '\0'; }));
  EXPECT_FALSE(accepts([](HttpCookie& c) { c.name = "a=b"; }));
  EXPECT_FALSE(accepts([](HttpCookie& c) { c.name = ""; }));
  EXPECT_FALSE(accepts([](HttpCookie& c) { c.domain = ""; }));
  EXPECT_FALSE(accepts([](HttpCookie& c) { c.domain = "a b"; }));
}

}  // namespace
}  // namespace velto
