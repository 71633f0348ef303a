#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"
#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinCore/Kinds/Shortcut/ShortcutSettings.h"
#include "TavrinCore/Kinds/Water/WaterSettings.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "Tests/Form/FormRig.h"

#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

using test::FormRig;
using test::kind;

TEST(FormKeys, ABookmarkIsStoredOnceItHasAnAddress) {
  FormRig rig(kind<BookmarkSettings>());
  for (auto* button : test::all<PanelButton>(&rig.form))
    if (button->title() == "Add bookmark" && button->isVisibleTo(&rig.form)) {
      button->click();
      break;
    }
  QApplication::processEvents();
  EXPECT_EQ(rig.value("bookmarks").compact(), "[]");
  EXPECT_THAT(rig.words().toStdString(), testing::Not(testing::HasSubstr("must be")));
  auto* title = rig.control<QLineEdit>("Title");
  auto* address = rig.control<QLineEdit>("Address");
  ASSERT_TRUE(title != nullptr && address != nullptr);
  FormRig::type(title, "Sun");
  EXPECT_EQ(rig.value("bookmarks").compact(), "[]");
  EXPECT_THAT(rig.words().toStdString(), testing::Not(testing::HasSubstr("must be")));
  address->setText("ftp://sun.example");
  EXPECT_EQ(rig.value("bookmarks").compact(), "[]");
  EXPECT_THAT(rig.words().toStdString(),
              testing::HasSubstr("“Address” cannot be \"ftp://sun.example\": Only addresses that "
                                 "begin with http or https can be kept"));
  address->setText("sun.example/two words");
  EXPECT_EQ(rig.value("bookmarks").compact(),
            R"([{"title":"Sun","url":"https://sun.example/two%20words"}])");
  EXPECT_THAT(rig.words().toStdString(), testing::Not(testing::HasSubstr("cannot be")));
  FormRig::type(title, "s");
  EXPECT_THAT(rig.value("bookmarks").compact(), testing::HasSubstr("Suns"));
  // What is kept already, whatever it is, does not stand in the way of its title.
  const auto old = JSONValue::parse(R"([{"title":"Old","url":"ftp://old.example"}])");
  BookmarkSettings settings;
  settings.bookmarks = {{"Old", "ftp://old.example"}};
  const DockWidget before(UUID(), "W", {}, DockWidget::Kind(settings), 1);
  const auto renamed = withValues(
      before,
      {{"bookmarks", JSONValue::parse(R"([{"title":"New","url":"ftp://old.example"}])"), old}}, {});
  EXPECT_EQ(renamed.kind.get<BookmarkSettings>()->bookmarks.front().title, "New");
}

void pressButton(FormRig& rig, const QString& title) {
  for (auto* button : test::all<PanelButton>(&rig.form))
    if (button->title() == title && button->isVisibleTo(&rig.form)) {
      button->click();
      break;
    }
  QApplication::processEvents();
}

// "https://a" is an address, and so are those that follow it.
TEST(FormKeys, WhatIsAnotherInEachBeginningIsTakenOnceItIsWhole) {
  FormRig rig(kind<BookmarkSettings>());
  pressButton(rig, "Add bookmark");
  auto* address = rig.control<QLineEdit>("Address");
  ASSERT_NE(address, nullptr);
  address->setFocus();
  rig.edits.clear();
  FormRig::type(address, "sun.example/two words");
  EXPECT_TRUE(rig.edits.empty());
  EXPECT_THAT(rig.words().toStdString(), testing::Not(testing::HasSubstr("cannot be")));
  FormRig::press(address, Qt::Key_Return);
  EXPECT_EQ(rig.value("bookmarks").compact(),
            R"([{"title":"","url":"https://sun.example/two%20words"}])");
  EXPECT_EQ(address->text(), "https://sun.example/two%20words");
  address->selectAll();
  FormRig::type(address, "ftp://sun.example");
  EXPECT_EQ(rig.edits.size(), 1U);
  FormRig::press(address, Qt::Key_Tab);
  EXPECT_EQ(rig.edits.size(), 2U) << "it is refused when the field is left";
  EXPECT_EQ(address->text(), "ftp://sun.example");
  EXPECT_THAT(rig.words().toStdString(), testing::HasSubstr("begin with http or https"));
  address->setFocus();
  address->selectAll();
  FormRig::type(address, "moon.example");
  EXPECT_THAT(rig.words().toStdString(), testing::Not(testing::HasSubstr("http or https")));
  EXPECT_TRUE(rig.form.commit()) << "before the form goes away";
  EXPECT_THAT(rig.value("bookmarks").compact(), testing::HasSubstr("https://moon.example"));

  FormRig shortcut(kind<ShortcutSettings>());
  auto* command = shortcut.control<QLineEdit>("Command");
  auto* folder = shortcut.control<QLineEdit>("Folder");
  command->setFocus();
  FormRig::type(command, "rm notes/old");
  EXPECT_TRUE(shortcut.edits.empty());
  FormRig::press(command, Qt::Key_Tab);
  EXPECT_EQ(shortcut.value("command"), JSONValue("rm notes/old"));
  EXPECT_EQ(QApplication::focusWidget(), folder) << "which has an effect from then on";
  FormRig::type(folder, "~/Pict");
  EXPECT_EQ(shortcut.edits.size(), 1U);
  // What is chosen takes the place of what was typed.
  pressButton(shortcut, "Choose…");
  EXPECT_EQ(folder->text(), "/home/ann/Pictures");
  EXPECT_EQ(shortcut.value("workingFolder"), JSONValue("/home/ann/Pictures"));
  EXPECT_THAT(shortcut.words().toStdString(), testing::Not(testing::HasSubstr("elsewhere")));
}

TEST(FormKeys, ABookmarkThatLacksItsAddressIsKeptWhileAnotherIsAskedFor) {
  FormRig rig(kind<BookmarkSettings>());
  pressButton(rig, "Add bookmark");
  FormRig::type(rig.control<QLineEdit>("Title"), "Sun");
  pressButton(rig, "Add bookmark");
  EXPECT_EQ(rig.control<QLineEdit>("Title")->text(), "Sun");
  auto* address = rig.control<QLineEdit>("Address");
  EXPECT_EQ(QApplication::focusWidget(), address);
  EXPECT_THAT(rig.words().toStdString(), testing::HasSubstr("“Address” must be an address"));
  // Also where what stands there is refused.
  FormRig::type(address, "ftp://sun.example");
  pressButton(rig, "Add bookmark");
  EXPECT_EQ(rig.control<QLineEdit>("Title")->text(), "Sun");
  EXPECT_EQ(address->text(), "ftp://sun.example");
  EXPECT_EQ(QApplication::focusWidget(), address);
  address->selectAll();
  FormRig::type(address, "sun.example");
  pressButton(rig, "Add bookmark");
  EXPECT_EQ(rig.value("bookmarks").compact(), R"([{"title":"Sun","url":"https://sun.example"}])");
  EXPECT_EQ(rig.control<QLineEdit>("Title")->text(), "") << "the next one";
  // And while another is looked at.
  FormRig::type(rig.control<QLineEdit>("Title"), "Moon");
  auto* list = rig.control<PanelList>("Bookmarks");
  list->onOpen(0);
  QApplication::processEvents();
  EXPECT_EQ(rig.control<QLineEdit>("Title")->text(), "Sun");
  pressButton(rig, "Add bookmark");
  EXPECT_EQ(rig.control<QLineEdit>("Title")->text(), "Moon");
  EXPECT_THAT(rig.words().toStdString(), testing::HasSubstr("“Address” must be an address"));
}

TEST(FormKeys, TabLeadsFromAListIntoWhatIsOpenBelowIt) {
  FormRig rig(kind<BookmarkSettings>());
  for (auto* button : test::all<PanelButton>(&rig.form))
    if (button->title() == "Add folder" && button->isVisibleTo(&rig.form))
      button->click();
  QApplication::processEvents();
  QStringList stops;
  auto* first = rig.control<PanelList>("Folders");
  for (QWidget* one = first->nextInFocusChain(); one != first; one = one->nextInFocusChain())
    if ((one->focusPolicy() & Qt::TabFocus) != 0 && one->isVisibleTo(&rig.form))
      stops.append(one->accessibleName());
  const auto text = stops.join(QLatin1Char('|')).toStdString();
  EXPECT_THAT(text, testing::StartsWith("Title|Add bookmark|Add folder|Show icons")) << text;
}

TEST(FormKeys, ANumberThatIsNotAllowedIsToldNotCut) {
  FormRig rig(kind<WaterSettings>());
  const auto told = [&] { return rig.words().toStdString(); };
  auto* glass = rig.control<QDoubleSpinBox>("Glass");
  ASSERT_NE(glass, nullptr);
  auto* line = glass->findChild<QLineEdit*>();
  const auto before = rig.value("glass");
  glass->selectAll();
  FormRig::type(glass, "99999");
  EXPECT_THAT(line->text().toStdString(), testing::HasSubstr("99999"));
  EXPECT_THAT(told(), testing::HasSubstr("“Glass” must be"));
  FormRig::press(glass, Qt::Key_Return);
  EXPECT_EQ(rig.value("glass"), before);
  EXPECT_THAT(told(), testing::HasSubstr("“Glass” must be")) << "what came back says why";
  glass->selectAll();
  FormRig::type(glass, "300");
  FormRig::press(glass, Qt::Key_Return);
  EXPECT_EQ(rig.value("glass"), JSONValue(300));
  EXPECT_THAT(told(), testing::Not(testing::HasSubstr("must be")));
  auto* width = rig.control<QDoubleSpinBox>("Width");
  width->selectAll();
  FormRig::type(width, "7");
  EXPECT_THAT(told(), testing::HasSubstr("“Width” must be"));
  EXPECT_EQ(rig.widget.span, 1);
}

TEST(FormKeys, AFieldLeavesTheKeysForUndoingToTheWindowWhereItHasNothingToUndo) {
  FormRig rig(kind<NoteSettings>());
  FormRig pomodoro(kind<PomodoroSettings>());
  const auto keeps = [](QWidget* field, Qt::KeyboardModifiers modifiers) {
    QKeyEvent event(QEvent::ShortcutOverride, Qt::Key_Z, modifiers);
    event.ignore();
    QApplication::sendEvent(field, &event);
    return event.isAccepted();
  };
  for (QWidget* field : {static_cast<QWidget*>(rig.control<QLineEdit>("Name")),
                         static_cast<QWidget*>(rig.control<QPlainTextEdit>("Text")),
                         static_cast<QWidget*>(pomodoro.control<QDoubleSpinBox>("Focus"))}) {
    const auto name = field->accessibleName().toStdString();
    EXPECT_FALSE(keeps(field, Qt::ControlModifier)) << name;
    EXPECT_FALSE(keeps(field, Qt::ControlModifier | Qt::ShiftModifier)) << name;
    FormRig::type(field, "3");
    EXPECT_TRUE(keeps(field, Qt::ControlModifier)) << name;
    EXPECT_FALSE(keeps(field, Qt::ControlModifier | Qt::ShiftModifier)) << name;
  }
}

TEST(FormKeys, BookmarksAreATree) {
  FormRig rig(kind<BookmarkSettings>());
  const auto press = [&](const QString& title) {
    PanelButton* last = nullptr;
    for (auto* button : test::all<PanelButton>(&rig.form))
      if (button->title() == title && button->isVisibleTo(&rig.form))
        last = button;
    if (last != nullptr)
      last->click();
    QApplication::processEvents();
  };
  press("Add folder");
  auto* title = rig.control<QLineEdit>("Title");
  ASSERT_NE(title, nullptr);
  title->selectAll();
  FormRig::type(title, "News");
  // The folder's own bookmarks stand in its editor, below those outside every folder.
  press("Add bookmark");
  auto* address = rig.control<QLineEdit>("Address");
  ASSERT_NE(address, nullptr);
  address->selectAll();
  FormRig::type(address, "https://example.org");
  EXPECT_EQ(rig.value("folders").compact(),
            R"([{"bookmarks":[{"title":"","url":"https://example.org"}],"title":"News"}])");
  EXPECT_EQ(rig.value("bookmarks").compact(), "[]");
}

} // namespace
} // namespace tavrin
