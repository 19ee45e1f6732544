#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "browsing/history/HistoryManager.h"
#include "browsing/safari/StandardSafari.h"
#include "platform/headless/HeadlessPlatform.h"
#include "tests/support/CookieFileWriter.h"

namespace velto {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kSnapshot = "/data/Velto/SafariImport";
constexpr const char* kAccessTitle = "Let Velto read Safari's files";

SafariCookie cookie(const std::string& name, const std::string& value) {
  SafariCookie made;
  made.domain = ".a.com";
  made.name = name;
  made.path = "/";
  made.value = value;
  made.expires = WallTime{4'000'000'000};
  made.created = WallTime{1'600'000'000.5};
  return made;
}

struct LoggedToasts : Toasts {
  void show(const std::string& text, const Window*) override { log.push_back(text); }
  std::vector<std::string> log;
};

/// On a machine without files of Safari's own; only staged cookies can be read without a disk.
class SafariImportTest : public ::testing::Test {
 protected:
  SafariImportTest() {
    headless.onFailure = [](const std::string& failure) { ADD_FAILURE() << failure; };
    headless.files().createDirectory("/data/Velto");
    changes = headless.notifications().observe(HistoryManager::kDidChange, [this] {
      EXPECT_FALSE(isStaged());
      toasts.log.emplace_back("history changed");
    });
  }

  void stage(const std::vector<SafariCookie>& cookies) {
    headless.files().createDirectory(kSnapshot);
    headless.files().writeAtomically(std::string(kSnapshot) + "/Cookies.binarycookies", cookieFile(cookies));
    headless.files().setModified(kSnapshot, headless.loop().now());
  }
  [[nodiscard]] bool isStaged() { return headless.files().exists(kSnapshot); }
  [[nodiscard]] std::vector<std::string> storedCookies() {
    std::vector<std::string> texts;
    for (const HttpCookie& each : headless.webEngine().defaultStore().cookieStore().cookies()) {
      texts.push_back(each.name + "=" + each.value);
    }
    return texts;
  }
  /// The first line of the one alert that is there, and its buttons.
  [[nodiscard]] std::vector<std::string> question() {
    headless.loop().drain();
    const auto alerts = headless.windowSystem().alerts();
    if (alerts.size() != 1) return {std::to_string(alerts.size()) + " alerts"};
    const std::string text = alerts[0].informativeText;
    std::vector<std::string> lines = {alerts[0].messageText, text.substr(0, text.find('\n'))};
    lines.insert(lines.end(), alerts[0].buttons.begin(), alerts[0].buttons.end());
    return lines;
  }
  [[nodiscard]] static std::vector<std::string> offer(const std::string& counts) {
    return {"Import from Safari", "Sign-ins: " + counts, "Import", "Cancel"};
  }
  void answer(const std::string& button) {
    headless.windowSystem().answerAlert(button);
    headless.loop().drain();
  }

  HeadlessPlatform headless;
  LoggedToasts toasts;
  Subscription changes;
  std::shared_ptr<HistoryStore> imports = std::make_shared<HistoryStore>(
      headless.files(), "/data/Velto", HistoryStore::kSafariImportsFileName, false);
  SafariDataSource source =
      SafariDataSource::standard(headless.environment(), headless.files(), headless.loop());
};

TEST_F(SafariImportTest, appliesWhatWasChosenAndTells) {
  SafariImportGap gap;
  for (int i = 0; i < 250; ++i) gap.missingCookies.push_back(cookie("m" + std::to_string(i), "1"));
  gap.missingCookies.push_back(cookie("", "refused"));
  gap.missingCookies.push_back(cookie("completes", "though; refused"));
  gap.changedCookies = {cookie("m0", "2")};
  gap.missingVisits = {{"http://new/", "New", {50.5}}, {"http://tie/", "After", {20}}};
  const std::vector<HistoryEntry> before = {{"http://old/", "Old", {20}}};
  const std::vector<HistoryEntry> merged = {
      {"http://new/", "New", {50}}, {"http://old/", "Old", {20}}, {"http://tie/", "After", {20}}};
  const struct {
    SafariImporter::Choices choices;
    std::size_t cookies;
    const char* toast;
  } cases[] = {
      {{false, false}, 0, "Already up to date with Safari"},
      {{false, true}, 0, "Imported 2 Safari visits"},
      {{true, false}, 250, "Imported 251 sign-in cookies from Safari"},
      {{true, true}, 250, "Imported 251 sign-in cookies and 2 visits from Safari"},
  };
  for (const auto& c : cases) {
    HeadlessCookieStore& store = headless.webEngine().defaultStore().cookieStore();
    for (HttpCookie gone : std::vector(store.cookies())) {
      gone.expires = WallTime{0};
      store.setCookie(gone, {});
    }
    imports->save(before);
    stage({});
    toasts.log.clear();
    SafariImporter importer(headless.platform(), source, imports, toasts);
    importer.apply(std::make_shared<SafariImportGap>(gap), c.choices,
                   [&] { toasts.log.emplace_back("done"); });
    EXPECT_TRUE(isStaged()) << "nothing ends within the call";
    headless.loop().drain();
    EXPECT_THAT(toasts.log, ElementsAre("history changed", c.toast, "done"));
    EXPECT_EQ(storedCookies().size(), c.cookies);
    if (c.cookies > 0) {
      EXPECT_EQ(storedCookies()[0], "m0=2") << "changed ones come after missing ones";
      EXPECT_EQ(store.cookies()[1].created, gap.missingCookies[1].created);
    }
    EXPECT_EQ(imports->load(), c.choices.visits ? merged : before);
  }
}

TEST_F(SafariImportTest, waitsForTheLastCookieAndTheLastVisit) {
  HeadlessCookieStore& store = headless.webEngine().defaultStore().cookieStore();
  SafariImportGap gap;
  gap.missingCookies = {cookie("a", "1"), cookie("b", "1")};
  gap.missingVisits = {{"http://a/", "A", {1}}};
  headless.backgroundQueue().hold(true);
  store.hold(true);
  SafariImporter importer(headless.platform(), source, imports, toasts);
  importer.apply(std::make_shared<SafariImportGap>(gap), {}, {});
  store.completeOne();
  headless.backgroundQueue().runAll();
  headless.loop().drain();
  EXPECT_THAT(toasts.log, IsEmpty());
  headless.backgroundQueue().hold(false);
  store.completeAll();
  headless.files().failAllCalls();
  headless.loop().drain();
  headless.files().stopFailing();
  EXPECT_EQ(toasts.log.back(), "Imported 2 sign-in cookies and 1 visits from Safari");
}

TEST_F(SafariImportTest, asksAndImportsAll) {
  SafariImportAlert import(headless.platform(), source, imports, toasts);
  stage({cookie("a", "1"), cookie("b", "1")});
  import.show(std::nullopt);
  EXPECT_EQ(question(),
            offer("2 cookies for every site. 2 missing in Velto, 0 changed since the last import."));
  answer("Import");
  EXPECT_THAT(toasts.log, ElementsAre("history changed", "Imported 2 sign-in cookies from Safari"));
  EXPECT_THAT(storedCookies(), ElementsAre("a=1", "b=1"));
  EXPECT_FALSE(isStaged());

  stage({cookie("a", "2"), cookie("b", "1")});
  import.show("a.com");
  auto later = offer("2 cookies for a.com. 0 missing in Velto, 1 changed since the last import.");
  later[2] = "Sync the Gap";
  EXPECT_EQ(question(), later);
  answer("Cancel");
  EXPECT_FALSE(isStaged());

  stage({cookie("a", "1")});
  import.show(std::nullopt);
  EXPECT_THAT(question(),
              ElementsAre("Import from Safari", "Sign-ins: 1 cookies for a.com, all in Velto already.", "OK"))
      << "the sites are remembered";
  answer("OK");
  EXPECT_EQ(toasts.log.size(), 2);
  EXPECT_FALSE(isStaged());
  EXPECT_EQ(headless.defaults().string(SafariImportAlert::kSiteListKey), "a.com");
}

TEST_F(SafariImportTest, asksOneQuestionAtATime) {
  SafariImportAlert import(headless.platform(), source, imports, toasts);
  headless.backgroundQueue().hold(true);
  import.show(std::nullopt);
  import.show(std::nullopt);
  headless.backgroundQueue().runAll();
  headless.backgroundQueue().hold(false);
  EXPECT_EQ(question()[0], kAccessTitle);

  stage({cookie("a", "1")});
  import.show(std::string(200'000, 'x'));
  EXPECT_THAT(toasts.log, ElementsAre("That list of sites is too long to import"));
  toasts.log.clear();
  import.show(std::nullopt);
  EXPECT_EQ(question(),
            offer("1 cookies for every site. 1 missing in Velto, 0 changed since the last import."));
  EXPECT_TRUE(isStaged()) << "the older question's end is not the end";

  HeadlessCookieStore& store = headless.webEngine().defaultStore().cookieStore();
  store.hold(true);
  answer("Import");
  import.show("b.com");
  EXPECT_EQ(question(), std::vector<std::string>{"0 alerts"}) << "the import is under way";
  store.completeAll();
  EXPECT_EQ(question()[0], kAccessTitle);
  EXPECT_EQ(toasts.log.size(), 2);
  answer("OK");

  stage({});
  headless.files().writeAtomically(std::string(kSnapshot) + "/Cookies.binarycookies", "cook damaged");
  import.show(std::nullopt);
  EXPECT_EQ(question()[0], kAccessTitle);
  answer("OK");
  EXPECT_FALSE(isStaged());
}

TEST_F(SafariImportTest, copiesDoNotOutliveTheirUse) {
  const auto live = [&] { return SafariImportAlert(headless.platform(), source, imports, toasts); };
  stage({cookie("a", "1")});
  { SafariImportAlert unused = live(); }
  EXPECT_TRUE(isStaged()) << "it is for another request";
  {
    SafariImportAlert asking = live();
    asking.show(std::nullopt);
    EXPECT_EQ(question().size(), 4);
  }
  EXPECT_FALSE(isStaged());
  answer("Cancel");

  const struct {
    const char* what;
    bool importFollows;
    double stagedBefore;
    bool stays;
  } cases[] = {{"left by a killed application", false, 1, false},
               {"just being staged", false, -1, true},
               {"staged for this start", true, 1, true}};
  for (const auto& c : cases) {
    SafariImportAlert starting = live();
    stage({});
    headless.files().setModified(kSnapshot, {headless.loop().now().secondsSince1970 - c.stagedBefore});
    const auto copy = headless.environment().temporaryDirectory / "SafariHistory-1";
    headless.files().createDirectory(copy);
    headless.backgroundQueue().hold(true);
    starting.removeLeftovers(c.importFollows);
    if (c.importFollows) starting.show(std::nullopt);
    EXPECT_EQ(headless.backgroundQueue().heldTasks(), 1) << "nothing is read while copies are removed";
    headless.backgroundQueue().hold(false);
    headless.backgroundQueue().runAll();
    EXPECT_EQ(isStaged(), c.stays) << c.what;
    EXPECT_FALSE(headless.files().exists(copy));
    if (c.importFollows) {
      EXPECT_EQ(question()[0], "Import from Safari");
      answer("OK");
    }
  }
}

}  // namespace
}  // namespace velto
