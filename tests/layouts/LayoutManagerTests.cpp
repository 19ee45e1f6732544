#include <functional>

#include <gmock/gmock.h>

#include "layouts/LayoutMenus.h"
#include "layouts/LayoutNames.h"
#include "tests/layouts/LayoutTesting.h"
#include "tests/layouts/LayoutsApplication.h"

namespace velto {
namespace {

using test::LayoutsApplication;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* kA = "https://a.example/";
constexpr const char* kB = "https://b.example/";
const Rect kPlaceA{{0, 540}, {500, 500}};
const Rect kPlaceB{{1700, 240}, {400, 600}};

/// Two displays, a window on each, saved as "Work"; the windows are closed unless `open`.
struct SavedWork : LayoutsApplication {
  explicit SavedWork(bool open = false) {
    setScreens({kMain, kRight});
    start();
    show(kA, kPlaceA);
    show(kB, kPlaceB).lastKnownScroll = LayoutScroll{0, 30};
    work = manager().save("Work", headless.loop().now());
    headless.loop().drain();
    manager().setCurrentLayoutID("");
    if (!open) closeAll();
  }
  void closeAll() {
    while (!panels().empty()) close(*panels().back());
  }
  Layout work;
};

TEST(LayoutManager, PutsTheWindowsBack) {
  SavedWork app;
  app.manager().open(app.work, false);
  ASSERT_EQ(app.panels().size(), 2U);
  EXPECT_EQ(app.panels()[0]->pendingScrollRestore, (LayoutScroll{0, 30}));
  app.headless.loop().drain();
  EXPECT_THAT(app.windows(),
              ElementsAre("https://b.example/ 1700,240 400x600", "https://a.example/ 0,540 500x500"));
  EXPECT_EQ(app.headless.application().keyWindow(), app.panels()[1]) << "the first one of the layout";
  EXPECT_EQ(app.manager().currentLayoutID(), app.work.id);
  EXPECT_THAT(app.alerts(), IsEmpty());
}

TEST(LayoutManager, OpensWhatItCanOfAHostileLayout) {
  SavedWork app;
  Layout layout = app.work;
  layout.windows[0].url = "no url";
  layout.windows[1].rect = {-1e300, 1e300, 1e300, 1e-300};
  layout.windows[1].zoom = -1;
  app.manager().openCopy(layout);
  app.headless.loop().drain();
  ASSERT_EQ(app.panels().size(), 1U);
  EXPECT_EQ(app.panels()[0]->webView->pageZoom(), 1);
  app.setScreens({});
  app.manager().open(layout, false);
  EXPECT_EQ(app.panels().size(), 1U) << "no display, no place";
}

TEST(LayoutManager, TellsOnceWhatWasApproximatedAndOffersToKeepIt) {
  const struct {
    std::optional<std::string_view> button;  // nothing is Escape
    std::size_t displaysStored;
    std::vector<std::string> alertsAfter;
  } cases[] = {
      {std::nullopt, 2, {}},
      {"Save Layout (Override)", 1, {}},
      {"Save as New Layout…",
       2,
       {"Save as New Layout: The layout keeps the places and pages of 2 windows. [Save|Cancel]"}},
  };
  for (const auto& c : cases) {
    SavedWork app;
    app.setScreens({LayoutsApplication::kMain});
    app.manager().open(app.work, false);
    EXPECT_EQ(app.panels().size(), 2U);
    EXPECT_THAT(app.alerts(), IsEmpty()) << "the windows come first";
    app.headless.loop().drain();
    ASSERT_THAT(app.alerts(),
                ElementsAre("“Work” was approximated: Saved on Main (1600×1000); the arrangement no "
                            "longer fits as it was. 2 displays when saved, 1 now. [OK|Save Layout "
                            "(Override)|Save as New Layout…]"));
    const Alert told = app.headless.windowSystem().alerts()[0];
    app.answer(c.button.value_or(told.buttons[told.dismissAnswer()]));
    EXPECT_EQ(app.stored().at(0).displays.size(), c.displaysStored);
    EXPECT_EQ(app.alerts(), c.alertsAfter);
    if (!c.alertsAfter.empty()) app.answer("Cancel");
    EXPECT_EQ(app.stored().size(), 1U);
  }
}

TEST(LayoutManager, SavesUnderANameThatThePersonGives) {
  SavedWork app(true);
  app.show("file:///tmp/page.html");
  const std::string local =
      "\n\n1 window points at a local file and will reopen blank. Serve the folder over http and save that "
      "instead. [Save|Cancel]";
  const std::string about = "The layout keeps the places and pages of 3 windows.";
  app.manager().saveLayout();
  EXPECT_THAT(app.alerts(), ElementsAre("Save as New Layout: " + about + local));
  EXPECT_EQ(app.headless.windowSystem().alerts()[0].textField, "Layout");
  app.answer("Save", "  ");
  EXPECT_THAT(app.alerts(), ElementsAre("Save as New Layout: Give the layout a name.\n\n" + about + local));
  app.answer("Save", " WORK ");
  EXPECT_THAT(app.alerts(),
              ElementsAre("Save as New Layout: The name “WORK” is already taken.\n\n" + about + local));
  app.answer("Save", " Evening\n");
  EXPECT_THAT(app.alerts(), IsEmpty());
  EXPECT_THAT(app.toasts(), ElementsAre("Saved “Evening”"));
  const auto evening = app.store().layoutNamed("Evening");
  ASSERT_TRUE(evening);
  EXPECT_EQ(evening->windows.size(), 3U);
  EXPECT_EQ(evening->createdAt, evening->updatedAt);
  EXPECT_EQ(app.manager().currentLayoutID(), evening->id);
  app.manager().saveLayout();
  EXPECT_EQ(app.headless.windowSystem().alerts()[0].textField, "Evening") << "the current one's";
  app.answer("Cancel");
  EXPECT_EQ(app.stored().size(), 2U);
}

TEST(LayoutManager, SavesNothingWhenThereIsNoPage) {
  SavedWork app;
  app.manager().setCurrentLayoutID(app.work.id);
  app.manager().saveLayoutOverride();
  EXPECT_THAT(app.alerts(), ElementsAre(HasSubstr("Could not save the layout: There are no Velto windows")));
  app.answer("OK");
  app.show(kA, {.incognito = true});
  app.manager().saveLayout();
  EXPECT_THAT(app.alerts(), ElementsAre(HasSubstr("No pages to save: ")));
  app.answer("OK");
  ASSERT_EQ(app.stored().size(), 1U);
  EXPECT_EQ(app.stored()[0].windows.size(), 2U);
}

TEST(LayoutManager, ChangesNothingWhenTheDiskDoesNotTakeIt) {
  SavedWork app(true);
  app.headless.files().failAllCalls(FileError::Kind::noSpace);
  app.manager().saveLayout();
  app.answer("Save", "New");
  EXPECT_THAT(app.alerts(), ElementsAre(HasSubstr("Could not save the layout: ")));
  app.answer("OK");
  EXPECT_EQ(app.manager().currentLayoutID(), std::nullopt);
  app.headless.files().stopFailing();
  EXPECT_EQ(app.stored(), std::vector<Layout>{*app.store().layoutNamed("Work")});
  EXPECT_THAT(app.toasts(), IsEmpty());
}

TEST(LayoutThumbnails, ArePicturesOfThePagesAndOfNoPrivateWindow) {
  const auto widthOf = [](const std::string& png) {
    std::size_t width = 0;
    for (std::size_t i = 16; i < 20; ++i) width = width * 256 + static_cast<unsigned char>(png.at(i));
    return width;
  };
  LayoutsApplication app;
  app.start();
  app.show(kA, Rect{{0, 100}, {400, 800}});
  app.show(kB, Rect{{0, 100}, {300, 200}});
  HovrelPanel& crashing = app.show("https://c.example/");
  app.show(kA, WindowOptions{.width = 900, .height = 100, .incognito = true});
  dynamic_cast<HeadlessWebView&>(*crashing.webView).crash();
  app.manager().save("Pictures", app.headless.loop().now());
  app.headless.loop().drain();
  const Layout layout = app.stored().at(0);
  std::vector<std::size_t> widths;
  for (const LayoutWindow& window : layout.windows) {
    if (window.thumbnail)
      widths.push_back(widthOf(app.headless.files().read(app.store().directory() / *window.thumbnail)));
  }
  EXPECT_THAT(widths, ElementsAre(240, 480));
  EXPECT_EQ(layout.windows[2].thumbnail, std::nullopt);

  app.headless.defaults().set("layoutThumbnailsEnabled", false);
  app.close(*app.panels()[0]);
  app.manager().update(layout, app.headless.loop().now());
  app.headless.loop().drain();
  EXPECT_EQ(app.stored().at(0).windows[0].thumbnail, layout.windows[1].thumbnail) << "it keeps what it has";
}

TEST(LayoutThumbnails, WaitForAPageThatHangsNoLongerThanTheyMust) {
  const struct {
    const char* what;
    std::function<void(LayoutsApplication&)> whileWaiting;
    std::vector<bool> pictures;
    std::size_t files;
  } cases[] = {
      {"it hangs", [](LayoutsApplication&) {}, {true, false}, 1},
      {"the layout is deleted",
       [](LayoutsApplication& app) { app.store().deleteLayout(app.stored().at(0).id); },
       {},
       0},
      {"pictures are turned off",
       [](LayoutsApplication& app) {
         app.headless.defaults().set("layoutThumbnailsEnabled", false);
         app.store().removeAllThumbnails();
       },
       {false, false},
       0},
  };
  for (const auto& c : cases) {
    LayoutsApplication app;
    app.start().show(kA);
    auto& hanging = dynamic_cast<HeadlessWebView&>(*app.show(kB).webView);
    hanging.setResponsive(false);
    app.manager().save("Pictures", app.headless.loop().now());
    app.headless.advance(1);
    c.whileWaiting(app);
    app.headless.advance(4);
    hanging.setResponsive(true);
    app.headless.advance(1);
    std::vector<bool> pictures;
    for (const Layout& layout : app.stored()) {
      for (const LayoutWindow& window : layout.windows) pictures.push_back(window.thumbnail.has_value());
    }
    EXPECT_EQ(pictures, c.pictures) << c.what;
    EXPECT_EQ(app.headless.files().list(app.store().directory() / "thumbs").size(), c.files) << c.what;
  }
}

TEST(LayoutMenus, NameLayoutsAndTheirWindows) {
  const auto counted = [](const std::string& name, std::size_t windows) {
    Layout layout = test::makeLayout(name, name);
    layout.windows.resize(windows);
    return layout;
  };
  EXPECT_THAT(layoutMenuRows({counted("Work", 1), counted("B", 2), counted("C", 0)}),
              ElementsAre(LayoutMenuRow{"Work (1 window)", "Work"}, LayoutMenuRow{"B (2 windows)", "B"},
                          LayoutMenuRow{"C (0 windows)", "C"}));
  EXPECT_THAT(layoutMenuRows({}), ElementsAre(LayoutMenuRow{"No Layouts", "", false}));
  const struct {
    std::optional<std::string> name;
    std::string title;
  } cases[] = {
      {{}, "Save Layout (Override)"},
      {"Work", "Save Layout (Override “Work”)"},
      {"éèêëéèêëéèêëéèêëéèêëéèêëéèêë", "Save Layout (Override “éèêëéèêëéèêëéèêëéèêëéèêëéèêë”)"},
      {"abcdefghijklmnopqrstuvwxyz123", "Save Layout (Override “abcdefghijklmnopqrstuvwxyz1…”)"},
      {" bcdefghijklmnopqrstuvwxy  123", "Save Layout (Override “ bcdefghijklmnopqrstuvwxy…”)"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(saveLayoutOverrideTitle(c.name ? std::optional(counted(*c.name, 1)) : std::nullopt), c.title);
  }
}

TEST(LayoutNames, AreMadeUnique) {
  EXPECT_EQ(uniqueName("Layout", {"LAYOUT", "layout 2", "Layout 4"}), "Layout 3");
}

}  // namespace
}  // namespace velto
