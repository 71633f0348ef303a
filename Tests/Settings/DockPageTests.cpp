#include "TavrinHost/Dock/DockItems.h"
#include "TavrinHost/Dock/FocusSession.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinSettings/Dock/DockItemRow.h"
#include "TavrinStorage/Dock/PlistFileBackend.h"
#include "TavrinStorage/Dock/ProfileStore.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "Tests/Settings/WindowRig.h"
#include "Tests/Support/Keys.h"

#include <QAccessible>
#include <QDoubleSpinBox>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QRadioButton>
#include <QUrl>
#include <gmock/gmock.h>

namespace tavrin {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

/// The page of a layout with Mail, Notes and, right of the divider, the folder Downloads.
class DockPageTest : public test::WindowTest {
protected:
  DockPageTest() {
    const auto file = folder / "home/Library/Preferences/com.apple.dock.plist";
    std::filesystem::create_directories(file.parent_path());
    DockSnapshot dock;
    for (const char* name : {"Mail", "Notes"})
      dock.apps.push_back({AppEntry{std::string("/Applications/") + name + ".app", {}, name, {}}});
    dock.others.push_back({FileEntry{"/home/Downloads", "Downloads", true, {}, {}}});
    dockPlistWriter(file).write(dock);
    EXPECT_EQ(run({"profiles", "create", "Work"}), 0) << errors.str();
    open();
    press("Dock Layouts");
  }
  Profile layout() const {
    return ProfileStore(folder / "data/profiles.json").file().profiles.front();
  }
  std::string items() const {
    std::string text;
    for (const auto& item : layout().items)
      text += item.displayName() + " ";
    text += "|";
    for (const auto& item : layout().others)
      text += " " + item.displayName();
    return text;
  }
  template <class Widget> Widget* named(const QString& name) const {
    for (auto* each : shown<Widget>())
      if (each->accessibleName() == name)
        return each;
    throw std::runtime_error("nothing called " + name.toStdString());
  }
  QLineEdit* lastLine(const QString& name) const {
    QLineEdit* last = nullptr;
    for (auto* each : shown<QLineEdit>())
      if (each->accessibleName() == name)
        last = each;
    return last;
  }
  void key(const QString& item, int which, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
    QKeyEvent event(QEvent::KeyPress, which, modifiers,
                    which >= Qt::Key_A && which <= Qt::Key_Z ? QString(QChar(which)) : QString());
    QApplication::sendEvent(button(item), &event);
    QApplication::processEvents();
  }
  void open(const QString& name, const QString& row) const {
    auto* list = named<PanelList>(name);
    for (int i = 0; i < list->count(); ++i)
      if (list->row(i).title == row)
        list->onOpen(i);
    QApplication::processEvents();
  }
  /// As assistive technology does, by the row's only action.
  static void choose(PanelList* list, int row) {
    auto* access = QAccessible::queryAccessibleInterface(list)->child(row);
    access->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QApplication::processEvents();
  }
  using test::WindowTest::open;
};

TEST_F(DockPageTest, AnItemsNameAndAFoldersLookAreSetAtItsTileAndUndone) {
  press("Mail");
  EXPECT_THAT(mute(), testing::IsEmpty());
  auto* name = lastLine("Item's name");
  EXPECT_EQ(name->text(), "Mail");
  for (const char* text : {"P", "Po", "Post"})
    name->setText(text);
  EXPECT_EQ(items(), "Post Notes | Downloads");
  EXPECT_THAT(words(), HasSubstr("changes the look of Post"));
  name->setText("");
  EXPECT_EQ(items(), "Mail Notes | Downloads") << "its own name";
  press("Undo Set an Item of Work");
  press("Downloads");
  for (const char* choice : {"Added", "Folder", "Fan"})
    press(choice);
  const auto options = folderOptions(*layout().others[0].file());
  EXPECT_EQ(options, (FolderOptions{FolderOptions::Arrangement::dateAdded,
                                    FolderOptions::Display::folder, FolderOptions::View::fan}));
  press("Remove");
  EXPECT_EQ(items(), "Mail Notes |");
  for (int i = 0; i < 4; ++i)
    press(i == 0 ? "Undo Remove an Item from Work" : "Undo Set an Item of Work");
  EXPECT_EQ(folderOptions(*layout().others[0].file()).view, FolderOptions::View::automatic);
}

TEST_F(DockPageTest, ItemsGoOverTheDividerByKeysAndButtonsAndALetterLeadsToThem) {
  key("Notes", Qt::Key_Right, Qt::ControlModifier);
  EXPECT_EQ(items(), "Mail | Notes Downloads");
  EXPECT_TRUE(layout().others[0].file());
  EXPECT_TRUE(button("Notes")->hasFocus());
  EXPECT_THAT(button("Notes")->accessibleDescription().toStdString(),
              HasSubstr("right of the divider"));
  press("Notes");
  press("Move Left");
  EXPECT_EQ(items(), "Mail Notes | Downloads");
  press("Move Left");
  EXPECT_EQ(items(), "Notes Mail | Downloads") << "the editor goes with it";
  EXPECT_TRUE(button("Move Left")->hasFocus());
  press("Move Left");
  EXPECT_EQ(items(), "Notes Mail | Downloads") << "there is no further";
  key("Move Left", Qt::Key_Escape);
  key("Notes", Qt::Key_D);
  EXPECT_TRUE(button("Downloads")->hasFocus());
  key("Downloads", Qt::Key_Delete);
  EXPECT_EQ(items(), "Notes Mail |");
  EXPECT_TRUE(button("Mail")->hasFocus());
}

TEST_F(DockPageTest, SpacersOfEachWidthAndPathsAreAddedAndAllSpacersGo) {
  for (const char* spacer : {"Small spacer", "Flex spacer"}) {
    press("Add…");
    open("Add an Item", spacer);
  }
  press("Add…");
  lastLine("Application, path or address")->setText("/nowhere/at all");
  open("Add an Item", "/nowhere/at all");
  EXPECT_EQ(items(), "Mail Notes Small spacer Flex spacer | Downloads at all");
  press("Small spacer");
  press("Usual");
  EXPECT_EQ(layout().items[2], DockItem{SpacerVariant::standard});
  press("Replace…");
  open("Put in its place", "Flex spacer");
  EXPECT_EQ(items(), "Mail Notes Flex spacer Flex spacer | Downloads at all");
  press("More for Items");
  open("More for Items", "Remove All Spacers");
  EXPECT_EQ(items(), "Mail Notes | Downloads at all");
  press("More for Items");
  open("More for Items", "Remove All Items");
  EXPECT_EQ(items(), "|");
}

TEST_F(DockPageTest, WhatIsChangedElsewhereWhileAnItemIsOpenIsNeverLost) {
  press("Mail");
  ASSERT_EQ(run({"profiles", "rename", "Work", "Job"}), 0);
  ProfileStore store(folder / "data/profiles.json");
  store.change(layout().id, [](Profile& profile) { profile.items.erase(profile.items.begin()); });
  lastLine("Item's name")->setText("Post");
  EXPECT_EQ(items(), "Notes | Downloads");
  EXPECT_THAT(words(), HasSubstr("was changed elsewhere"));
}

TEST_F(DockPageTest, WhatDescribesAnApplicationIsThatApplicationAlsoWhenItIsDropped) {
  ApplicationInfo mail;
  mail.path = folder / "org.example.Post.desktop";
  mail.id = "org.example.Post";
  mail.name = "Post";
  desk.library.installed = {mail};
  for (const auto& file : {std::filesystem::path(mail.path), folder / "letter.txt"})
    writeFileAtomically(file, "x");
  const auto drop = [&](const std::filesystem::path& file) {
    auto* row = button("Mail")->parentWidget();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(file))});
    QDragEnterEvent enters(QPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(row, &enters);
    QDropEvent event(QPointF(row->width() - 1, row->height() - 1), Qt::CopyAction, &data,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(row, &event);
    desk.loop.advance(0);
    QApplication::processEvents();
  };
  drop(mail.path);
  EXPECT_EQ(items(), "Mail Notes Post | Downloads");
  ASSERT_NE(layout().items.back().app(), nullptr);
  EXPECT_EQ(layout().items.back().app()->bundleIdentifier, "org.example.Post");
  drop(folder / "letter.txt");
  EXPECT_EQ(items(), "Mail Notes Post | Downloads letter.txt");
}

TEST_F(DockPageTest, ACopyIsTheOneThatIsShownAndNothingIsExportedOfNothing) {
  EXPECT_TRUE(button("Export All…")->isEnabled());
  press("Duplicate");
  EXPECT_EQ(lastLine("Name")->text(), "Work 2");
  auto* list = named<PanelList>("Layouts");
  EXPECT_TRUE(list->row(1).isShown);
  EXPECT_FALSE(list->row(0).isShown);
  EXPECT_FALSE(list->row(1).isChecked);
  press("Delete");
  press("Delete");
  EXPECT_FALSE(button("Export All…")->isEnabled());
}

TEST_F(DockPageTest, AFocusIsFollowedFromThenOnAndSaysUntilWhen) {
  press("When it begins");
  EXPECT_THAT(platform.running.launches.back().arguments, ElementsAre("focus"));
  EXPECT_THAT(words(), HasSubstr("Followed until you log out"));
  press("Start It With the Session");
  EXPECT_TRUE(platform.starting.isOn);
  EXPECT_THAT(words(), HasSubstr("whenever you log in"));
  lastLine("Focus mode")->setText("Sleep");
  EXPECT_EQ(layout().focusModeBinding, "Sleep");
  lastLine("Focus mode")->setText("");
  EXPECT_EQ(layout().focusModeBinding, "on");
  // "off" is no Focus, on the way to "Office".
  window->activateWindow();
  lastLine("Focus mode")->setFocus();
  test::typeText(lastLine("Focus mode"), "office");
  EXPECT_EQ(layout().focusModeBinding, "on");
  lastLine("Name")->setFocus();
  EXPECT_EQ(layout().focusModeBinding, "office");
  open("Layouts", "Shortcuts and Focus");
  EXPECT_THAT(mute(), testing::IsEmpty());
  press("Numbered shortcuts");
  open("Numbered shortcuts", "None");
  test::SilentContext context(platform);
  EXPECT_EQ(followingRecord(context).value().numbered, HotkeyModifiers());
  named<PanelSwitch>("Follow shortcuts and Focus")->click();
  EXPECT_EQ(followingRecord(context).value().isOn, false);
  press("Undo Stop Following Shortcuts and Focus");
  EXPECT_EQ(followingRecord(context).value().isOn, std::nullopt);
}

TEST_F(DockPageTest, TheDockAsItIsIsThereToBeRead) {
  open("Layouts", "The Dock Now");
  EXPECT_THAT(words(), HasSubstr("Kept by Work."));
  EXPECT_THAT(mute(), testing::IsEmpty());
  key("Mail", Qt::Key_Delete);
  key("Mail", Qt::Key_Right, Qt::ControlModifier);
  press("Downloads");
  EXPECT_THAT(words(), HasSubstr("“Downloads” leads to /home/Downloads"));
  test::SilentContext context(platform);
  EXPECT_THAT(DockLibrary(context).snapshot().apps, SizeIs(2));
  EXPECT_EQ(items(), "Mail Notes | Downloads");
  ASSERT_EQ(run({"dock", "remove", "Mail"}), 0) << errors.str();
  open("Layouts", "The Dock Now");
  EXPECT_THAT(words(), HasSubstr("No layout keeps these items."));
  EXPECT_THROW(button("Mail"), std::runtime_error);
  EXPECT_TRUE(button("Notes")->isEnabled());
  // What is said of a layout without items is not said of the Dock.
  ASSERT_EQ(run({"dock", "remove", "--all"}), 0) << errors.str();
  open("Layouts", "The Dock Now");
  const auto bare = named<DockItemRow>("Items")->grab().toImage();
  for (int y = 0; y < bare.height(); ++y)
    for (int x = 0; x < bare.width(); ++x)
      ASSERT_EQ(bare.pixel(x, y), bare.pixel(0, 0));
}

TEST_F(DockPageTest, FocusCanBeLookedAtMoreOftenThanEachSecond) {
  open("Layouts", "Shortcuts and Focus");
  auto* interval = named<QDoubleSpinBox>("Look at Focus every");
  EXPECT_EQ(interval->text(), "2 s");
  interval->setValue(0.5);
  test::SilentContext context(platform);
  EXPECT_EQ(followingRecord(context).value().interval, 0.5);
  EXPECT_EQ(interval->text(), "0.5 s");
  window->activateWindow();
  interval->setFocus();
  interval->selectAll();
  test::typeText(interval, "5000");
  EXPECT_THAT(words(), HasSubstr("“Look at Focus every” must be"));
  EXPECT_EQ(followingRecord(context).value().interval, 0.5);
}

TEST_F(DockPageTest, LayoutsAreComparedAndBackupsOpened) {
  press("New, Empty");
  open("Layouts", "Work");
  press("More for the Layout");
  open("More for the Layout", "Compare With…");
  open("Compare With", "Layout");
  EXPECT_THAT(words(), HasSubstr("“Work” beside “Layout”: it adds Mail, Notes and Downloads."));
  ASSERT_EQ(run({"dock", "remove", "Mail"}), 0) << errors.str();
  ASSERT_EQ(run({"backups", "create"}), 0);
  choose(named<PanelList>("Layouts"), 4);
  auto* backups = named<PanelList>("Backups of widgets and layouts");
  EXPECT_THAT(backups->row(0).subtitle.toStdString(),
              HasSubstr("Made at a start, or when asked for; "));
  choose(backups, 0);
  EXPECT_THAT(words(), HasSubstr("Dock layouts: Work and Layout."));
  named<PanelList>("Backups of the Dock")->onAction(0, 0);
  QApplication::processEvents();
  EXPECT_THAT(ProfileStore(folder / "data/profiles.json").file().profiles, SizeIs(3));
}

} // namespace
} // namespace tavrin
