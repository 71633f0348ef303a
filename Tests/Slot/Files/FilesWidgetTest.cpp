#include "TavrinCore/Kinds/Files/FilesSettings.h"
#include "TavrinCore/Kinds/Files/ScreenshotSettings.h"
#include "TavrinCore/Kinds/Files/Shelf.h"
#include "TavrinCore/Kinds/Files/ShelfSettings.h"
#include "TavrinCore/Kinds/Runs/TimerSettings.h"
#include "TavrinStorage/WidgetStore.h"
#include "TavrinWidgetsUI/Files/QuickLook.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "Tests/Slot/SlotFixture.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPlainTextEdit>

namespace tavrin::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using State = FolderListing::State;

/// The three kinds that list files, each on folders the test tells of.
class FilesWidget : public SlotTest {
protected:
  void startWith(const DockWidget::Kind& kind, int span = 1) {
    start(kind, span);
    settle();
  }
  void settle() {
    do {
      platform_.loop.runBackground();
      QApplication::processEvents();
    } while (platform_.loop.waitingBackground() > 0);
  }
  void tell(const std::vector<FolderFile>& files, std::size_t unfinished = 0,
            State state = State::listed) {
    platform_.folders.tell({{{"/home/user/Downloads", state}}, files, unfinished});
    settle();
  }
  FolderFile file(const std::string& path, double ago = 0) const {
    return {path, platform_.fakeClock.now() - ago, 1000, false};
  }
  void key(QWidget* target, int key, Qt::KeyboardModifiers modifiers = {}) {
    QKeyEvent press(QEvent::KeyPress, key, modifiers);
    QApplication::sendEvent(target, &press);
  }
  template <class Settings> Settings stored() const {
    WidgetStore store(folder_ / "widgets.json");
    return *store.widget(3)->kind.get<Settings>();
  }
  PanelList* list() const { return all<PanelList>().front(); }
  PanelGrid* grid() const { return all<PanelGrid>().front(); }
  FakeUserFiles& user() { return platform_.fakeUserFiles; }
  std::string copied(const std::string& type) const {
    for (const auto& format : platform_.fakePasteboard.written.back())
      if (format.type == type)
        return std::string(format.data->view());
    return {};
  }
};

TEST_F(FilesWidget, FilesShowTheNewestAndForgetTheirMarksOnceLookedAt) {
  startWith(FilesSettings{});
  tell({file("/d/b.pdf", 10), file("/d/a.zip", 20)});
  EXPECT_EQ(platform_.tile.value, "b.pdf, 2 new");
  click();
  EXPECT_THAT(words(), Contains(QString("2 new")));
  EXPECT_TRUE(list()->row(0).isNew);
  EXPECT_EQ(platform_.tile.value, "b.pdf");
  EXPECT_EQ(stored<FilesSettings>().seenUntil, platform_.fakeClock.now());
  EXPECT_EQ(platform_.center.count("dev.quellby.tavrin.widgetsChanged"), 1);
  click();
  platform_.loop.advance(5);
  tell({file("/d/c.txt"), file("/d/b.pdf", 15)});
  EXPECT_EQ(platform_.tile.value, "c.txt, 1 new");
  click();
  EXPECT_TRUE(list()->row(0).isNew);
  EXPECT_FALSE(list()->row(1).isNew);
}

TEST_F(FilesWidget, TheBadgeSaysSoWhereThereAreMoreThanAreListed) {
  FilesSettings settings;
  settings.limit = 2;
  startWith(settings);
  tell({file("/d/a", 1), file("/d/b", 2)});
  EXPECT_EQ(platform_.tile.value, "a, 2 new");
  const QImage two = platform_.tile.last.copy();
  tell({file("/d/a", 1), file("/d/b", 2), file("/d/c", 3)});
  EXPECT_EQ(platform_.tile.value, "a, 2+ new");
  EXPECT_NE(platform_.tile.last, two);
  click();
  EXPECT_THAT(words(), Contains(QString("2+ new")));
  EXPECT_EQ(list()->count(), 2);
}

TEST_F(FilesWidget, AFileThatComesWhileThePanelIsOpenIsSeenWhenItCloses) {
  startWith(FilesSettings{});
  tell({});
  click();
  tell({file("/d/a")});
  EXPECT_EQ(platform_.tile.value, "a, 1 new");
  platform_.fakePopover.close();
  EXPECT_EQ(platform_.tile.value, "a");
}

TEST_F(FilesWidget, TheKeyboardAloneOpensCopiesAndThrowsAway) {
  startWith(FilesSettings{});
  tell({file("/d/a b.pdf"), file("/d/\xFF.zip", 5)});
  click();
  list()->setCurrentRow(0);
  key(list(), Qt::Key_Return);
  EXPECT_THAT(user().opened, ElementsAre("/d/a b.pdf"));
  EXPECT_FALSE(platform_.fakePopover.shown);
  click();
  list()->setCurrentRow(1);
  key(list(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(copied("text/uri-list"), "file:///d/%FF.zip\r\n");
  click();
  key(list(), Qt::Key_Right);
  key(list(), Qt::Key_Return);
  EXPECT_THAT(user().revealed, ElementsAre("/d/\xFF.zip"));
  click();
  user().hasTrash = false;
  key(list(), Qt::Key_Delete);
  settle();
  EXPECT_THAT(user().trashed, ElementsAre("/d/\xFF.zip"));
  EXPECT_THAT(words().join(u' ').toStdString(), HasSubstr("Failed to move"));
  click();
  click();
  EXPECT_THAT(words().join(u' ').toStdString(), Not(HasSubstr("Failed to move")));
}

TEST_F(FilesWidget, WhatWasTrashedComesBackAlsoAfterThePanelHasClosed) {
  for (const bool isScreenshots : {false, true}) {
    user().trashed.clear();
    user().restored.clear();
    startWith(isScreenshots ? DockWidget::Kind(ScreenshotSettings{})
                            : DockWidget::Kind(FilesSettings{}));
    tell({file("/d/a.png"), file("/d/b.png", 5)});
    click();
    EXPECT_TRUE(button("Undo")->isHidden());
    QWidget* const items = isScreenshots ? static_cast<QWidget*>(grid()) : list();
    for (int row : {0, 1}) {
      if (isScreenshots)
        grid()->setCurrentCell(row);
      else
        list()->setCurrentRow(row);
      key(items, Qt::Key_Delete);
      settle();
    }
    EXPECT_EQ(user().trashed.size(), 2u);
    click();
    click();
    ASSERT_FALSE(button("Undo")->isHidden());
    button("Undo")->click();
    settle();
    button("Undo")->click();
    settle();
    EXPECT_THAT(user().restored, ElementsAre("/d/b.png", "/d/a.png"));
    EXPECT_TRUE(button("Undo")->isHidden());
    platform_.fakePopover.close();
    app_.reset();
  }
}

TEST_F(FilesWidget, TheWideTilesButtonOpensWhatItShows) {
  startWith(FilesSettings{}, 3);
  tell({file("/d/a.pdf")});
  bool isUsed = false;
  for (double x = 0; x < 220 && !isUsed; x += 4)
    isUsed = platform_.tile.onClick({x, 32});
  EXPECT_TRUE(isUsed);
  EXPECT_THAT(user().opened, ElementsAre("/d/a.pdf"));
}

TEST_F(FilesWidget, SettingsChangedElsewhereCountWhileThePanelIsOpen) {
  startWith(FilesSettings{});
  tell({file("/d/a")});
  click();
  write(FilesSettings{{"/other", "/more"}, 7, true, std::nullopt});
  announce();
  settle();
  EXPECT_THAT(platform_.folders.followers.back().request.folders, ElementsAre("/other", "/more"));
  EXPECT_TRUE(platform_.fakePopover.shown);
}

TEST_F(FilesWidget, EveryStateHasItsWords) {
  startWith(FilesSettings{});
  click();
  EXPECT_THAT(words(), Contains(QString("Looking for files")));
  tell({});
  EXPECT_THAT(words(), Contains(QString("No files yet")));
  tell({}, 2);
  EXPECT_THAT(words(), Contains(QString("Nothing finished yet")));
  EXPECT_THAT(words(), Contains(QString("2 downloading")));
  tell({}, 0, State::missing);
  EXPECT_THAT(words(), Contains(QString("There is no folder ~/Downloads")));
  tell({}, 0, State::unreadable);
  EXPECT_THAT(words(), Contains(QString("~/Downloads cannot be read")));
}

TEST_F(FilesWidget, ScreenshotsAreChosenOpenedCopiedAndDraggedByTheirPaths) {
  TemporaryFolder shots;
  QImage picture(40, 20, QImage::Format_RGB32);
  picture.fill(Qt::blue);
  ASSERT_TRUE(picture.save(QString::fromStdString(shots / "b.jpg")));
  put(shots / "a.png", "no picture");
  startWith(ScreenshotSettings{});
  EXPECT_EQ(platform_.tile.value, "Looking");
  tell({file(shots / "b.jpg"), file(shots / "a.png", 60)});
  EXPECT_THAT(platform_.tile.value, HasSubstr("b.jpg"));
  click();
  grid()->setCurrentCell(0);
  EXPECT_EQ(grid()->cell(0).name, "b.jpg");
  EXPECT_FALSE(grid()->cell(0).image.isNull());
  key(grid(), Qt::Key_C, Qt::ControlModifier);
  settle();
  EXPECT_FALSE(platform_.fakePopover.shown);
  EXPECT_TRUE(copied("image/png").starts_with("\x89PNG"));
  EXPECT_THAT(copied("text/uri-list"), HasSubstr("b.jpg"));
  click();
  grid()->setCurrentCell(1);
  key(grid(), Qt::Key_C, Qt::ControlModifier);
  settle();
  EXPECT_EQ(copied("image/png"), "");
  EXPECT_THAT(copied("text/uri-list"), HasSubstr("a.png"));
  click();
  EXPECT_THAT(grid()->onDrag(1), ElementsAre(shots / "a.png"));
  key(grid(), Qt::Key_Return);
  EXPECT_EQ(user().opened.size(), 1U);
  click();
  button("Show in Folder")->click();
  EXPECT_EQ(user().revealed.size(), 1U);
}

TEST_F(FilesWidget, TheChosenScreenshotStaysChosenWhileNewOnesCome) {
  startWith(ScreenshotSettings{});
  tell({file("/s/b.png", 5), file("/s/a.png", 10)});
  click();
  grid()->setCurrentCell(1);
  tell({file("/s/c.png"), file("/s/b.png", 5), file("/s/a.png", 10)});
  EXPECT_EQ(grid()->currentCell(), 2);
  EXPECT_THAT(words(), Contains(QString("a.png")));
  tell({});
  EXPECT_THAT(words(), Contains(QString("No screenshots yet")));
  EXPECT_FALSE(button("Copy")->isVisibleTo(panel()));
}

TEST_F(FilesWidget, AClickOnAPictureOfTheWideTileOpensIt) {
  startWith(ScreenshotSettings{}, 3);
  tell({file("/s/b.png"), file("/s/a.png", 10)});
  EXPECT_TRUE(platform_.tile.onClick({30, 32}));
  EXPECT_THAT(user().opened, ElementsAre("/s/b.png"));
}

TEST_F(FilesWidget, DroppedFilesAreKeptByAShelfAndRefusedByOthers) {
  startWith(ShelfSettings{});
  EXPECT_TRUE(app_->applicationOpenFiles({"/a/one", "/a/\xFF"}));
  EXPECT_TRUE(app_->applicationOpenFiles({"/b/two", "/a/one"}));
  EXPECT_THAT(stored<ShelfSettings>().paths, ElementsAre("/b/two", "/a/one", "file:///a/%FF"));
  EXPECT_EQ(platform_.center.count("dev.quellby.tavrin.widgetsChanged"), 2);
  EXPECT_EQ(platform_.tile.value, "3 items");
  std::vector<std::filesystem::path> many;
  for (int i = 0; i < 50; ++i)
    many.push_back("/many/" + std::to_string(i));
  EXPECT_TRUE(app_->applicationOpenFiles(many));
  EXPECT_EQ(stored<ShelfSettings>().paths.size(), 40U);
  write(TimerSettings{});
  announce();
  EXPECT_FALSE(app_->applicationOpenFiles({"/a/one"}));
}

TEST_F(FilesWidget, TheShelfMarksWhatIsMissingAndLetsItBeTakenOff) {
  startWith(ShelfSettings{{"/a/gone", "/a/there"}});
  tell({file("/a/there")});
  EXPECT_EQ(platform_.tile.value, "2 items, 1 missing");
  click();
  EXPECT_TRUE(list()->row(0).isDone);
  EXPECT_THAT(list()->onDrag(0), IsEmpty());
  EXPECT_THAT(list()->onDrag(1), ElementsAre("/a/there"));
  list()->setCurrentRow(0);
  key(list(), Qt::Key_Return);
  EXPECT_THAT(user().opened, IsEmpty());
  key(list(), Qt::Key_Delete);
  EXPECT_THAT(stored<ShelfSettings>().paths, ElementsAre("/a/there"));
  button("Copy All")->click();
  EXPECT_EQ(copied("text/uri-list"), "file:///a/there\r\n");
  click();
  button("Clear")->click();
  EXPECT_THAT(stored<ShelfSettings>().paths, IsEmpty());
  EXPECT_THAT(words(), Contains(QString("Nothing on the shelf")));
}

TEST_F(FilesWidget, SpaceLooksIntoAFileAndBack) {
  TemporaryFolder files;
  put(files / "notes.txt", "first line\nsecond line");
  put(files / "data.bin", std::string("\0\1\2", 3));
  startWith(ShelfSettings{{files / "notes.txt", files / "data.bin"}});
  tell({file(files / "notes.txt"), file(files / "data.bin")});
  click();
  auto* look = all<QuickLook>().front();
  list()->setCurrentRow(0);
  key(list(), Qt::Key_Space);
  settle();
  EXPECT_FALSE(list()->isVisibleTo(panel()));
  EXPECT_EQ(panel()->findChild<QPlainTextEdit*>()->toPlainText(), "first line\nsecond line");
  key(look, Qt::Key_Space);
  EXPECT_TRUE(list()->isVisibleTo(panel()));
  list()->setCurrentRow(1);
  key(list(), Qt::Key_Space);
  settle();
  EXPECT_THAT(words(), Contains(QString("There is no quick look for this file")));
  // Taken off by another process while it is looked at.
  write(ShelfSettings{{files / "notes.txt"}});
  announce();
  EXPECT_TRUE(list()->isVisibleTo(panel()));
}

} // namespace
} // namespace tavrin::test
