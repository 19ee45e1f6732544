#include <gmock/gmock.h>

#include "layouts/LayoutFormat.h"
#include "tests/layouts/LayoutsApplication.h"

namespace velto {
namespace {

using test::LayoutsApplication;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* kA = "https://a.example/";
const Rect kPlace{{100, 600}, {300, 200}};

/// A window, saved as "Work" and closed again.
struct SavedWork : LayoutsApplication {
  SavedWork() {
    start();
    show(kA, kPlace);
    command("?action=save&name=Work");
    close(*panels().front());
  }
};

TEST(LayoutCommands, OpenAsAsked) {
  using Windows = std::vector<std::string>;
  const std::string first = "https://a.example/ 100,600 300x200";
  const std::string second = "https://a.example/ 124,576 300x200";
  const struct {
    std::vector<std::string> queries;
    Windows windows;
  } cases[] = {
      {{"?action=OPEN&slug=WORK"}, {first}},
      {{"?action=open&slug=&name=work"}, {first}},
      {{"?action=open&slug=work&slug=b&name=c"}, {first}},
      {{"?action=open&slug=%20work%20&copy=1"}, {first}},
      {{"?action=open&slug=work&copy=TRUE"}, {second}},
      {{"?action=open&slug=work&copy=true&exact=true"}, {second}},
      {{"?action=open&slug=work", "?action=open&slug=work"}, {first, second}},
      {{"?action=open&slug=work", "?action=open&slug=work&exact=true"}, {first, first}},
  };
  for (const auto& c : cases) {
    SavedWork app;
    for (const std::string& query : c.queries) app.command(query);
    EXPECT_EQ(app.windows(), c.windows) << c.queries[0];
    EXPECT_THAT(app.alerts(), IsEmpty()) << "a step aside is no approximation";
  }
}

TEST(LayoutCommands, TellWhatTheyCannotDoAndChangeNothing) {
  const std::string notUnderstood =
      "That layout command was not understood: Try velto://layout?action=open&slug=… — or run `velto "
      "layouts` "
      "instead. [OK]";
  const auto missing = [](const std::string& name) {
    return "No layout named “" + name + "”: Run `velto layouts list` to see the layouts on this Mac. [OK]";
  };
  const struct {
    std::string query;
    std::string alert;
  } cases[] = {
      {"", notUnderstood},
      {"?action=frobnicate", notUnderstood},
      {"?action=save&name=%20%20", notUnderstood},
      {"?action=open&slug=Nope", missing("Nope")},
      {"?action=open&name=Nope", missing("Nope")},
      {"?action=rename&slug=Nope&to=X", missing("Nope")},
      {"?action=save&name=New",
       "Could not save the layout: There are no Velto windows with a loaded page to capture, so there is "
       "nothing "
       "to save. [OK]"},
      {"?action=save&name=work",
       "Could not save the layout: There are no Velto windows with a loaded page to capture, so there is "
       "nothing "
       "to save. [OK]"},
  };
  for (const auto& c : cases) {
    SavedWork app;
    const auto before = app.stored();
    app.command(c.query);
    EXPECT_THAT(app.alerts(), ElementsAre(c.alert)) << c.query;
    app.answer("OK");
    EXPECT_EQ(app.stored(), before) << c.query;
    EXPECT_THAT(app.windows(), IsEmpty()) << c.query;
  }
}

TEST(LayoutCommands, SaveOverALayoutOfThatName) {
  SavedWork app;
  const Layout before = app.stored().at(0);
  app.show("https://b.example/");
  app.command("?action=save&name=WORK");
  ASSERT_EQ(app.stored().size(), 1U);
  EXPECT_EQ(app.stored()[0].id, before.id);
  EXPECT_EQ(app.stored()[0].name, "Work");
  EXPECT_EQ(app.stored()[0].windows.at(0).url, "https://b.example/");
  EXPECT_TRUE(app.stored()[0].windows[0].thumbnail);
  EXPECT_EQ(app.manager().currentLayoutID(), before.id);
}

TEST(LayoutCommands, RenameAndTellAboutADiskThatDoesNotTakeIt) {
  SavedWork app;
  app.command("?action=rename&slug=work&to=Deep%20Focus");
  EXPECT_TRUE(app.store().layoutWithSlug("deep-focus"));
  const auto before = app.stored();
  app.headless.files().createDirectory("/elsewhere");
  app.headless.files().rename(app.store().directory() / "thumbs", "/elsewhere/thumbs");
  app.headless.files().append(app.store().directory() / "thumbs", "a file in the folder's place");
  app.command("?action=rename&slug=deep-focus&to=X");
  EXPECT_THAT(app.alerts(), ElementsAre(HasSubstr("Could not rename the layout: ")));
  app.answer("OK");
  EXPECT_EQ(app.stored(), before);
}

TEST(LayoutCommands, ShowWhatThereIs) {
  LayoutsApplication app;
  app.start();
  app.command("?action=show");
  EXPECT_THAT(app.alerts(), ElementsAre(HasSubstr("There are no layouts yet.")));
  app.answer("OK");
  app.show(kA, kPlace);
  app.command("?action=save&name=3000");
  app.headless.files().writeAtomically(app.store().directory() / "x.veltolayout.json", "{");
  app.command("?action=list");
  EXPECT_THAT(app.alerts(),
              ElementsAre(HasSubstr("Layouts: 3000 (1 window): velto 3000-layout\n\nx.veltolayout.json: ")));
  app.answer("OK");
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
      {15, 0, 15, "(0 windows): velto l14"},
      {99, 0, 16, "and 84 more."},
      {99, 3, 16, "and 88 more. Run `velto layouts list` to see all of them.\n\nx0.veltolayout.json: "},
      {99, 6, 16, "and 86 more. Run `velto layouts list` to see all of them.\n\n6 files could not be read."},
  };
  for (const auto& c : cases) {
    LayoutsApplication app;
    app.start();
    for (int i = 0; i < c.layouts; ++i) {
      Layout layout;
      layout.id = layout.name = "l" + std::to_string(i);
      layout.createdAt = layout.updatedAt = {1e6 - i};
      app.headless.files().createDirectory(app.store().directory());
      app.headless.files().writeAtomically(app.store().directory() / (layout.id + ".veltolayout.json"),
                                           encodeJson(layout));
    }
    for (int i = 0; i < c.unreadable; ++i) {
      app.headless.files().writeAtomically(
          app.store().directory() / ("x" + std::to_string(i) + ".veltolayout.json"), "{");
    }
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
