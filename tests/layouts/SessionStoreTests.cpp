#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "layouts/SessionStore.h"
#include "platform/headless/MemoryFileManager.h"
#include "tests/layouts/LayoutTesting.h"

namespace velto {
namespace {

using test::golden;
using test::replacing;

constexpr const char* kFile = "/data/Velto/Session.json";

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
  const std::string bad[] = {"",
                             "[]",
                             "{}",
                             whole.substr(0, whole.size() / 2),
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

}  // namespace
}  // namespace velto
