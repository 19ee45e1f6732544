#include <gmock/gmock.h>

#include "layouts/LayoutFormat.h"
#include "tests/layouts/LayoutTesting.h"
#include "tests/layouts/LayoutsApplication.h"

namespace velto {
namespace {

using test::LayoutsApplication;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* kA = "https://a.example/";
const Rect kPlace{{100, 600}, {300, 200}};

using Command = std::optional<LayoutURLCommand>;

LayoutAddress slug(std::string value) { return {LayoutAddress::Kind::slug, std::move(value)}; }
LayoutAddress name(std::string value) { return {LayoutAddress::Kind::name, std::move(value)}; }

TEST(LayoutURLCommandTests, ReadsQueries) {
  const std::vector<std::pair<std::string, Command>> cases = {
      {"", std::nullopt},
      {"action=frobnicate&slug=a", std::nullopt},
      {"ACTION=show", std::nullopt},
      {"action=%20List%0A", ShowLayouts{}},
      {"action=show&action=save&name=x", ShowLayouts{}},
      {"action&action=show", std::nullopt},

      {"action=open", std::nullopt},
      {"action=open&slug=%20&name=", std::nullopt},
      {"action=OPEN&slug=Morning", OpenLayout{slug("Morning")}},
      {"action=open&slug=&name=X%20Y", OpenLayout{name("X Y")}},
      {"action=open&name=X&slug=a", OpenLayout{slug("a")}},
      {"action=open&slug=a&slug=b", OpenLayout{slug("a")}},
      {"action=open&name=%20%C3%9C%2Bx+%0D%0A", OpenLayout{name("Ü+x+")}},
      {"action=open&slug=a&copy=TRUE", OpenLayout{slug("a"), true, false}},
      {"action=open&slug=a&copy=1&exact=%20true%20", OpenLayout{slug("a"), false, true}},
      {"action=open&slug=a&copy=false&copy=true", OpenLayout{slug("a")}},

      {"action=save&name=%20%20", std::nullopt},
      {"action=save&name=%FF", std::nullopt},
      {"action=save&name=%20Morning%20dashboards%20", SaveLayout{"Morning dashboards"}},

      {"action=rename&to=b", std::nullopt},
      {"action=rename&slug=a&to=%09", std::nullopt},
      {"action=rename&slug=a&to=%20New%20name", RenameLayout{slug("a"), "New name"}},
  };
  for (const auto& [query, expected] : cases) {
    EXPECT_EQ(parseLayoutURLCommand(Url::parse("velto://layout?" + query).value()), expected) << query;
  }
  EXPECT_EQ(parseLayoutURLCommand(Url::parse("velto://layout").value()), std::nullopt);
}

/// A window, saved as "Work" and closed again.
struct SavedWork : LayoutsApplication {
  SavedWork() {
    start();
    show(kA, kPlace);
    command("?action=save&name=Work");
    close(*panels().front());
  }
};

TEST(LayoutCommands, StepAsideForEachSetThatIsOpen) {
  using Texts = std::vector<std::string>;
  const std::string open = "?action=open&slug=work";
  const std::string first = "https://a.example/ 100,600 300x200";
  const std::string second = "https://a.example/ 124,576 300x200";
  const std::string third = "https://a.example/ 148,552 300x200";
  const struct {
    Texts queries;
    Texts windows;
  } cases[] = {
      {{"?action=open&name=WORK", open, open}, {first, second, third}},
      {{open, open + "&exact=true"}, {first, first}},
      {{open, open + "&copy=true"}, {first, second}},
      {{open + "&copy=true"}, {second}},
      {{open + "&copy=true&exact=true"}, {second}},
  };
  for (const auto& c : cases) {
    SavedWork app;
    for (const std::string& query : c.queries) app.command(query);
    EXPECT_EQ(app.windows(), c.windows) << c.queries.back();
    EXPECT_THAT(app.alerts(), IsEmpty()) << "a step aside is no approximation";
  }
}

TEST(LayoutCommands, TellWhatTheyCannotDoAndChangeNothing) {
  const std::pair<const char*, const char*> cases[] = {
      {"?action=save&name=%20%20", "That layout command was not understood: Try velto://layout"},
      {"?action=open&slug=Nope", "No layout named “Nope”: Run `velto layouts list`"},
      {"?action=rename&slug=Nope&to=X", "No layout named “Nope”: Run `velto layouts list`"},
      {"?action=save&name=work", "Could not save the layout: There are no Velto windows with a loaded page"},
  };
  for (const auto& [query, alert] : cases) {
    SavedWork app;
    const auto before = app.stored();
    app.command(query);
    EXPECT_THAT(app.alerts(), ElementsAre(HasSubstr(alert))) << query;
    app.answer("OK");
    EXPECT_EQ(app.stored(), before) << query;
    EXPECT_THAT(app.windows(), IsEmpty()) << query;
  }
}

TEST(LayoutCommands, SaveOverALayoutOfThatName) {
  SavedWork app;
  const Layout before = app.stored().at(0);
  app.show("https://b.example/");
  app.command("?action=save&name=WORK");
  ASSERT_EQ(app.stored().size(), 1U);
  EXPECT_EQ(app.stored()[0].createdAt, before.createdAt);
  EXPECT_EQ(app.stored()[0].id, before.id);
  EXPECT_EQ(app.stored()[0].name, "Work");
  EXPECT_EQ(app.stored()[0].windows.at(0).url, "https://b.example/");
  EXPECT_TRUE(app.stored()[0].windows[0].thumbnail);
  EXPECT_EQ(app.manager().currentLayoutID(), before.id);
}

TEST(LayoutCommands, RenameAndTellAboutADiskThatDoesNotTakeIt) {
  SavedWork app;
  Layout renamed = app.stored().at(0);
  renamed.name = "Deep Focus";
  app.command("?action=rename&slug=work&to=Deep%20Focus");
  EXPECT_THAT(app.stored(), ElementsAre(renamed));
  app.headless.files().createDirectory("/elsewhere");
  app.headless.files().rename(app.store().directory() / "thumbs", "/elsewhere/thumbs");
  app.headless.files().append(app.store().directory() / "thumbs", "a file in the folder's place");
  app.command("?action=rename&slug=deep-focus&to=X");
  EXPECT_THAT(app.alerts(), ElementsAre(HasSubstr("Could not rename the layout: ")));
  app.answer("OK");
  EXPECT_THAT(app.stored(), ElementsAre(renamed));
}

TEST(LayoutCommands, PrepareTheStoreAfterTheFirstPage) {
  SavedWork app;
  const auto file = app.store().directory() / "index.txt";
  const std::string index = app.headless.files().read(file);
  app.quit();
  app.headless.files().writeAtomically(file, "stale");
  app.start();
  EXPECT_EQ(app.headless.files().read(file), "stale");
  app.headless.advance(1);
  EXPECT_EQ(app.headless.files().read(file), index);
}

TEST(LayoutCommands, ShowNoMoreLinesThanFit) {
  const struct {
    int layouts;
    int unreadable;
    std::ptrdiff_t lines;
    const char* part;
  } cases[] = {
      {0, 0, 1, "There are no layouts yet."},
      {15, 0, 15, "3014 (0 windows): velto 3014-layout"},
      {99, 3, 16, "and 88 more. Run `velto layouts list` to see all of them.\n\nx0.veltolayout.json: "},
      {99, 6, 16, "and 86 more. Run `velto layouts list` to see all of them.\n\n6 files could not be read."},
  };
  for (const auto& c : cases) {
    LayoutsApplication app;
    app.start();
    const auto put = [&](const std::string& name, const std::string& bytes) {
      app.headless.files().createDirectory(app.store().directory());
      app.headless.files().writeAtomically(app.store().directory() / (name + ".veltolayout.json"), bytes);
    };
    for (int i = 0; i < c.layouts; ++i) {
      const std::string name = std::to_string(3000 + i);
      put(name, encodeJson(test::makeLayout(name, name, 1e6 - i)));
    }
    for (int i = 0; i < c.unreadable; ++i) put("x" + std::to_string(i), "{");
    app.command("?action=show");
    ASSERT_EQ(app.alerts().size(), 1U);
    const std::string text = app.alerts()[0];
    EXPECT_THAT(text, HasSubstr(c.part));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n') + 1, c.lines) << c.part;
    app.answer("OK");
  }
}

}  // namespace
}  // namespace velto
