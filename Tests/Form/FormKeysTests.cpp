#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"
#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
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
