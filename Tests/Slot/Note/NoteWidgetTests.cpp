#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinSlot/Controllers/NoteWidget.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Note/NotePanelView.h"
#include "Tests/Slot/StoredSlot.h"

namespace tavrin::test {
namespace {

std::string storedText(StoredSlot& slot) {
  return slot.store().widget(slot.id)->kind.get<NoteSettings>()->text;
}
PanelTextEdit& editor(StoredSlot& slot) {
  return *slot.panel.rootView()->findChild<PanelTextEdit*>();
}

TEST(NoteWidgetController, SavesWhatIsTypedAndTellsEveryone) {
  StoredSlot slot;
  slot.show<NoteWidgetController>(NoteSettings{});
  EXPECT_EQ(slot.platform.tile.value, "Click to write a note");
  slot.controller->togglePanel();
  const auto drawn = slot.platform.tile.displays;
  for (const auto* typed : {"M", "Mi", "Mil", "Milk"})
    editor(slot).setPlainText(typed);
  slot.platform.loop.advance(0.01);
  EXPECT_EQ(slot.platform.tile.value, "Milk"); // before it is saved
  EXPECT_EQ(slot.platform.tile.displays, drawn + 1);
  EXPECT_EQ(slot.platform.center.count("dev.quellby.tavrin.widgetsChanged"), 0);
  slot.platform.loop.advance(1);
  EXPECT_EQ(storedText(slot), "Milk");
  EXPECT_EQ(slot.platform.center.count("dev.quellby.tavrin.widgetsChanged"), 1);
}

TEST(NoteWidgetController, SavesWhenThePanelClosesAndWhenItGoes) {
  StoredSlot slot;
  slot.show<NoteWidgetController>(NoteSettings{});
  slot.controller->togglePanel();
  editor(slot).setPlainText("Milk");
  slot.platform.fakePopover.close();
  EXPECT_EQ(storedText(slot), "Milk");
  slot.controller->togglePanel();
  editor(slot).setPlainText("Bread");
  slot.drop();
  EXPECT_EQ(storedText(slot), "Bread");
}

TEST(NoteWidgetController, KeepsTypedTextWhenAnotherIsWrittenMeanwhile) {
  StoredSlot slot;
  slot.show<NoteWidgetController>(NoteSettings{"Milk", "#FBBF24"});
  slot.controller->togglePanel();
  editor(slot).setPlainText("Milk, bread");
  slot.setKind(NoteSettings{"Soap", "#FF0000"});
  EXPECT_EQ(editor(slot).toPlainText(), "Milk, bread");
  slot.platform.loop.advance(10);
  EXPECT_EQ(storedText(slot), "Soap");
  slot.press("Keep Both");
  EXPECT_EQ(storedText(slot), "Milk, bread\n\nSoap");
  EXPECT_EQ(editor(slot).toPlainText(), "Milk, bread\n\nSoap");
  EXPECT_EQ(slot.store().widget(slot.id)->kind.get<NoteSettings>()->colorHex, "#FF0000");
}

TEST(NoteWidgetController, AnotherTextSizeLeavesTheCursorWhereItIs) {
  StoredSlot slot;
  slot.show<NoteWidgetController>(NoteSettings{"Milk and bread", "#FBBF24"});
  slot.controller->togglePanel();
  slot.panel.rootView()->show();
  QTextCursor cursor = editor(slot).textCursor();
  cursor.setPosition(9);
  cursor.setPosition(5, QTextCursor::KeepAnchor);
  editor(slot).setTextCursor(cursor);
  slot.platform.fakeWorkspace.textScale = 1.5;
  slot.platform.fakeWorkspace.appearance.call();
  EXPECT_EQ(slot.panel.rootView()->focusWidget(), &editor(slot));
  EXPECT_EQ(editor(slot).textCursor().position(), 5);
  EXPECT_EQ(editor(slot).textCursor().anchor(), 9);
  slot.platform.fakeWorkspace.textScale = 1;
  slot.platform.fakeWorkspace.appearance.call();
}

TEST(NoteWidgetController, FindsAChangeThatNobodyAnnounced) {
  for (const bool goes : {false, true}) {
    StoredSlot slot;
    slot.show<NoteWidgetController>(NoteSettings{"Milk", "#FBBF24"});
    slot.controller->togglePanel();
    editor(slot).setPlainText("Milk, bread");
    auto opened = slot.store();
    auto other = *opened.widget(slot.id);
    other.name = "Shopping";
    other.kind = NoteSettings{"Soap", "#FBBF24"};
    opened.update(other);
    if (goes) {
      slot.drop();
    } else {
      slot.platform.loop.advance(1);
      EXPECT_EQ(storedText(slot), "Soap");
      slot.platform.fakePopover.close();
    }
    EXPECT_EQ(storedText(slot), "Milk, bread\n\nSoap") << goes;
    EXPECT_EQ(slot.store().widget(slot.id)->name, "Shopping");
  }
}

TEST(NoteWidgetController, DoesNotTurnAWidgetBackIntoANote) {
  StoredSlot slot;
  slot.show<NoteWidgetController>(NoteSettings{});
  slot.controller->togglePanel();
  editor(slot).setPlainText("Milk");
  auto opened = slot.store();
  auto other = *opened.widget(slot.id);
  other.kind = ClockSettings{};
  opened.update(other);
  slot.drop();
  EXPECT_TRUE(slot.store().widget(slot.id)->kind.get<ClockSettings>());
}

} // namespace
} // namespace tavrin::test
