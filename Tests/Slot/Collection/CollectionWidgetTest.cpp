#include "TavrinCore/Kinds/Collection/CollectionSettings.h"
#include "TavrinWidgetsUI/Collection/CollectionModel.h"
#include "TavrinWidgetsUI/Collection/CollectionViews.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "Tests/Slot/SlotFixture.h"

#include <QMenu>

namespace tavrin::test {
namespace {

class CollectionWidget : public SlotTest {
protected:
  void SetUp() override {
    SlotTest::SetUp();
    platform_.library.installed = {FakeApplicationLibrary::app("Browser", {{"private", "Private"}}),
                                   FakeApplicationLibrary::app("Mail"),
                                   FakeApplicationLibrary::app("Maps")};
    platform_.library.installed[2].keywords = {"travel"};
  }
  static AppEntry entry(const std::string& name) {
    return {"/apps/" + name + ".desktop", name + ".desktop", name, std::nullopt};
  }
  void begin(std::vector<AppEntry> apps, CollectionLayout layout = CollectionLayout::grid,
             int span = 1) {
    start(CollectionSettings{std::move(apps), layout}, span);
    settle();
  }
  void settle() { platform_.loop.advance(1); }
  void open() {
    click();
    settle();
  }
  template <class Widget> Widget& shown() const {
    for (auto* each : all<Widget>())
      if (each->isVisibleTo(panel()))
        return *each;
    throw std::runtime_error("no such widget is shown");
  }
  std::vector<std::string> stored() const {
    std::vector<std::string> names;
    const WidgetStore store(folder_ / "widgets.json");
    const auto widget = store.widget(3);
    for (const auto& app : widget->kind.get<CollectionSettings>()->apps)
      names.push_back(app.bundleIdentifier.value_or(app.path));
    return names;
  }
};

TEST(CollectionCells, AFewIconsFillTheWholeWidthOfAWideTile) {
  for (const double side : {48.0, 64.0, 96.0, 128.0})
    for (const auto& [count, span] : {std::pair(5, 4), std::pair(4, 3), std::pair(2, 2)}) {
      const TileSize size{side, span};
      const auto cells = CollectionCells::of(CollectionLayout::grid, count, size);
      ASSERT_EQ(cells.rows, 1);
      ASSERT_EQ(cells.columns, count);
      const double width = size.bodyWidth() - 2 * size.padding();
      const double used = count * cells.side + (count - 1) * cells.gap;
      EXPECT_LE(used, width + 0.01) << side << ' ' << count;
      EXPECT_GT(used, width * 0.9) << side << ' ' << count;
      EXPECT_LE(cells.side, size.body() - 2 * size.padding() + 0.01);
    }
}

TEST_F(CollectionWidget, TheTileShowsEachIconOnceRead) {
  begin({entry("Browser"), entry("Mail")});
  EXPECT_EQ(platform_.tile.name, "Mine");
  EXPECT_EQ(platform_.tile.value, "Browser, Mail");
  EXPECT_THAT(platform_.library.icons, testing::ElementsAre("Browser", "Mail"));
  const int displays = platform_.tile.displays;
  announce();
  settle();
  EXPECT_EQ(platform_.tile.displays, displays) << "nothing is drawn twice";
  EXPECT_EQ(platform_.library.icons.size(), 2U);
}

TEST_F(CollectionWidget, AClickOnAnAppOpensItAndClosesThePanel) {
  begin({entry("Browser"), entry("Mail")});
  open();
  auto& grid = shown<PanelGrid>();
  ASSERT_EQ(grid.count(), 2);
  EXPECT_EQ(grid.cell(1).caption, "Mail");
  grid.onOpen(1);
  settle();
  EXPECT_THAT(platform_.library.launches, testing::ElementsAre("Mail.desktop"));
  EXPECT_FALSE(platform_.fakePopover.shown);
}

TEST_F(CollectionWidget, WhatGoesWrongIsSaidAndThePanelStays) {
  begin({entry("Browser"), entry("Gone")}, CollectionLayout::vertical);
  open();
  auto& list = shown<PanelList>();
  EXPECT_EQ(list.row(1).subtitle, "Not installed");
  EXPECT_EQ(list.row(1).title, "Gone") << "the name it had when it was chosen";
  list.onOpen(1);
  settle();
  EXPECT_TRUE(words().contains("Failed to open Gone because it is not installed"));
  EXPECT_TRUE(platform_.library.launches.empty());
  platform_.library.trouble = "Failed to open Browser because its program cannot be run";
  list.onOpen(0);
  settle();
  EXPECT_TRUE(words().contains(QString::fromStdString(platform_.library.trouble)));
  EXPECT_TRUE(platform_.fakePopover.shown);
}

TEST_F(CollectionWidget, AnAppThatIsInstalledLaterIsThere) {
  begin({entry("Chess")}, CollectionLayout::vertical);
  open();
  EXPECT_EQ(shown<PanelList>().row(0).subtitle, "Not installed");
  platform_.library.installed.push_back(FakeApplicationLibrary::app("Chess"));
  platform_.library.changes.call();
  settle();
  EXPECT_EQ(shown<PanelList>().row(0).subtitle, "");
}

TEST_F(CollectionWidget, AppsAreChosenFromTheDesktopsList) {
  begin({});
  open();
  EXPECT_TRUE(words().contains("No apps yet"));
  button("Add Apps…")->click();
  settle();
  auto& search = shown<PanelSearchField>();
  search.setText("trav");
  search.onChange("trav");
  ASSERT_EQ(shown<PanelList>().count(), 1) << "found by its keyword";
  search.onReturn();
  settle();
  EXPECT_THAT(stored(), testing::ElementsAre("Maps.desktop"));
  EXPECT_TRUE(shown<PanelList>().row(0).isChecked);
  search.onChange("");
  shown<PanelList>().onOpen(0);
  shown<PanelList>().onOpen(2);
  settle();
  EXPECT_THAT(stored(), testing::ElementsAre("Browser.desktop")) << "a second click takes it out";
  button("Done")->click();
  EXPECT_EQ(shown<PanelGrid>().count(), 1);
}

TEST_F(CollectionWidget, TheMenuActsMovesAndRemoves) {
  begin({entry("Browser"), entry("Mail"), entry("Maps")});
  open();
  auto& grid = shown<PanelGrid>();
  const auto pick = [&](int index, const QString& title) {
    grid.onMenu(index, QPoint());
    auto* menu = panel()->findChild<QMenu*>();
    bool isDone = false;
    for (auto* action : menu->actions())
      if (action->text() == title && action->isEnabled()) {
        action->trigger();
        isDone = true;
        break;
      }
    delete menu;
    settle();
    return isDone;
  };
  EXPECT_TRUE(pick(2, "Move Earlier"));
  EXPECT_THAT(stored(), testing::ElementsAre("Browser.desktop", "Maps.desktop", "Mail.desktop"));
  EXPECT_FALSE(pick(0, "Move Earlier"));
  EXPECT_TRUE(pick(1, "Remove"));
  grid.onRemove(1);
  EXPECT_THAT(stored(), testing::ElementsAre("Browser.desktop"));
  EXPECT_TRUE(pick(0, "Private"));
  EXPECT_THAT(platform_.library.launches, testing::ElementsAre("Browser.desktop/private"));
}

TEST_F(CollectionWidget, AListHasTheSameMenuAtOnce) {
  begin({entry("Browser"), entry("Mail")}, CollectionLayout::vertical);
  open();
  auto& list = shown<PanelList>();
  ASSERT_TRUE(list.onMenu);
  list.onMenu(1, QPoint());
  const auto* menu = panel()->findChild<QMenu*>();
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->actions().front()->text(), "Open");
  EXPECT_EQ(menu->actions().back()->text(), "Remove");
}

TEST_F(CollectionWidget, AWideTileOpensItsAppsByAClick) {
  begin({entry("Browser"), entry("Mail")}, CollectionLayout::horizontal, 3);
  // From the left, where the first icon of the row in the middle must be.
  for (double x = 0; x < 3 * 64 && platform_.library.launches.empty(); x += 4)
    platform_.tile.onClick({x, 32});
  EXPECT_THAT(platform_.library.launches, testing::ElementsAre("Browser.desktop"));
  platform_.library.trouble = "Failed to open Mail because its program cannot be run";
  settle();
  EXPECT_TRUE(platform_.fakePopover.shown) << "where the tile has no room for words";
}

TEST_F(CollectionWidget, SettingsChangedOutsideShowInTheOpenPanel) {
  begin({entry("Browser")});
  open();
  write(CollectionSettings{{entry("Mail"), entry("Maps")}, CollectionLayout::vertical});
  announce();
  settle();
  auto& list = shown<PanelList>();
  ASSERT_EQ(list.count(), 2);
  EXPECT_EQ(list.row(0).title, "Mail");
}

} // namespace
} // namespace tavrin::test
