#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/Runs/StopwatchSettings.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinCore/Kinds/System/PetSettings.h"
#include "TavrinSlot/Controllers/NoteWidget.h"
#include "TavrinSlot/Controllers/SystemWidget.h"

#include "TavrinSlot/Base/DockPanelPresenter.h"
#include "TavrinSlot/Base/DockTileRenderer.h"
#include "TavrinStorage/StoragePath.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Note/NotePanelView.h"
#include "TavrinWidgetsUI/Runs/StopwatchPanelView.h"
#include "TavrinWidgetsUI/System/ClockPanelView.h"
#include "TavrinWidgetsUI/System/CountdownPanelView.h"
#include "TavrinWidgetsUI/System/PetPanelView.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/SlotRig.h"

#include <QAbstractButton>
#include <QFontDatabase>
#include <QLabel>
#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

constexpr Date noon{800'000'000};

struct Slot {
  Slot() {
    platform.files.variables["TAVRIN_APP_SUPPORT_DIR"] = folder.path().string();
    changed = platform.center.observe("dev.quellby.tavrin.widgetsChanged", [this](const auto&) {
      if (controller)
        controller->update(*store().widget(id));
    });
  }
  ~Slot() { drop(); }

  template <class Controller> void show(DockWidget::Kind kind) {
    auto opened = store();
    id = opened.create("Mine", std::move(kind)).id;
    opened.claimSlot(id);
    controller = begun<Controller>(context, *opened.widget(id));
  }
  /// As the slot does when its widget goes.
  void drop() {
    changed.reset();
    controller.reset();
  }
  WidgetStore store() {
    return WidgetStore(StoragePath(platform.files, platform.bundle).widgetsFileURL());
  }
  void setKind(DockWidget::Kind kind) {
    auto opened = store();
    auto widget = *opened.widget(id);
    widget.kind = std::move(kind);
    opened.update(widget);
    platform.center.post("dev.quellby.tavrin.widgetsChanged");
  }
  std::string storedText() { return store().widget(id)->kind.get<NoteSettings>()->text; }
  template <class View> View* panelAs() { return dynamic_cast<View*>(panel.rootView()); }
  void press(const QString& title) {
    for (auto* button : panel.rootView()->findChildren<QAbstractButton*>())
      if (button->text() == title)
        return button->click();
    FAIL() << "no button " << title.toStdString();
  }
  PanelTextEdit& editor() { return *panel.rootView()->findChild<PanelTextEdit*>(); }

  TemporaryFolder folder;
  FakePlatform platform{noon};
  DockTileRenderer tile{platform.tile};
  DockPanelPresenter panel{platform.fakePopover, platform.geometry};
  int edits = 0;
  SlotContext context{platform, tile, panel, [this] { ++edits; }};
  UUID id;
  Living<WidgetController> controller;
  TokenPtr changed;
};

DockWidget::Kind clockWithSeconds() {
  ClockSettings settings;
  settings.showsSeconds = true;
  return settings;
}

TEST(SystemWidgetController, DrawsAtOnceAndThenOncePerDisplayedSecond) {
  Slot slot;
  slot.show<SystemWidgetController>(clockWithSeconds());
  EXPECT_EQ(slot.platform.tile.displays, 1);
  EXPECT_EQ(slot.platform.tile.name, "Clock");
  slot.platform.loop.advance(10);
  EXPECT_EQ(slot.platform.tile.displays, 11);
}

TEST(SystemWidgetController, AClockWithoutSecondsPaintsOnceAMinute) {
  Slot slot;
  slot.show<SystemWidgetController>(ClockSettings{});
  slot.platform.loop.advance(180);
  EXPECT_EQ(slot.platform.tile.displays, 4);
}

TEST(SystemWidgetController, AnotherInterfaceFontIsOnTheTileAndInThePanelAtOnce) {
  const QString usual = interfaceFontFamily();
  QString other;
  for (const QString& family : QFontDatabase::families())
    if (family != usual && QFontDatabase::isSmoothlyScalable(family))
      other = family;
  ASSERT_FALSE(other.isEmpty()) << "one font only";
  Slot slot;
  slot.show<SystemWidgetController>(ClockSettings{});
  slot.controller->togglePanel();
  const QImage before = slot.platform.tile.last;
  const auto panelFamily = [&] {
    return slot.panel.rootView()->findChild<QLabel*>()->font().family();
  };
  EXPECT_EQ(panelFamily(), usual);
  slot.platform.fakeWorkspace.fontFamily = other.toStdString();
  slot.platform.fakeWorkspace.appearance.call();
  EXPECT_NE(slot.platform.tile.last, before);
  EXPECT_EQ(panelFamily(), other);
  for (const auto& none :
       {std::optional<std::string>("No Such Font"), std::optional<std::string>()}) {
    slot.platform.fakeWorkspace.fontFamily = none;
    slot.platform.fakeWorkspace.appearance.call();
    EXPECT_EQ(slot.platform.tile.last, before);
    EXPECT_EQ(panelFamily(), usual);
  }
}

TEST(SystemWidgetController, AnotherTextSizeAndContrastReachTheOpenPanelAtOnce) {
  Slot slot;
  slot.show<SystemWidgetController>(ClockSettings{});
  slot.controller->togglePanel();
  const auto panel = [&] { return dynamic_cast<PanelView*>(slot.panel.rootView()); };
  EXPECT_EQ(panel()->fittingSize().width(), 280);
  const int height = panel()->fittingSize().height();
  slot.platform.fakeWorkspace.textScale = 1.5;
  slot.platform.fakeWorkspace.highContrast = true;
  slot.platform.fakeWorkspace.appearance.call();
  EXPECT_EQ(panel()->fittingSize().width(), 420);
  EXPECT_GT(panel()->fittingSize().height(), height);
  EXPECT_EQ(panel()->colours().text, QColor(Qt::black));
  slot.platform.fakeWorkspace.textScale = 1;
  slot.platform.fakeWorkspace.appearance.call();
  EXPECT_EQ(panel()->fittingSize().width(), 280);
}

TEST(SystemWidgetController, TheOpenPanelBecomesTheOtherKinds) {
  Slot slot;
  slot.show<SystemWidgetController>(clockWithSeconds());
  auto* controller = slot.controller.get();
  slot.controller->togglePanel();
  EXPECT_TRUE(slot.panelAs<ClockPanelView>());
  slot.setKind(CountdownSettings{noon + 90, true});
  EXPECT_TRUE(slot.panelAs<CountdownPanelView>());
  slot.setKind(StopwatchSettings{});
  EXPECT_TRUE(slot.panelAs<StopwatchPanelView>());
  slot.setKind(PetSettings{});
  EXPECT_TRUE(slot.panelAs<PetPanelView>());
  EXPECT_EQ(slot.controller.get(), controller);
  EXPECT_TRUE(slot.panel.isShown());

  // Changed while closed, it is the right one at the next opening.
  slot.controller->togglePanel();
  slot.setKind(clockWithSeconds());
  slot.controller->togglePanel();
  EXPECT_TRUE(slot.panelAs<ClockPanelView>());
  slot.press("Edit Clock…");
  EXPECT_EQ(slot.edits, 1);
}

TEST(SystemWidgetController, AStopwatchOutlivesItsProcess) {
  Slot slot;
  slot.show<SystemWidgetController>(StopwatchSettings{});
  slot.controller->togglePanel();
  slot.press("Start");
  slot.platform.loop.advance(65);
  slot.press("Lap");

  const std::string key = "dev.quellby.tavrin.stopwatch." + slot.id.text();
  ASSERT_TRUE(slot.platform.defaults.values.count(key));
  const auto run = decode<StopwatchRun>(slot.platform.defaults.values.at(key));
  EXPECT_EQ(run.startedAt, noon);
  ASSERT_EQ(run.laps.size(), 1U);
  EXPECT_NEAR(run.laps[0], 65, 1e-3);

  const auto widget = *slot.store().widget(slot.id);
  slot.controller.reset();
  slot.platform.fakePopover.close();
  slot.platform.loop.advance(3600);
  slot.controller = begun<SystemWidgetController>(slot.context, widget);
  slot.controller->togglePanel();
  slot.press("Pause");
  EXPECT_NEAR(decode<StopwatchRun>(slot.platform.defaults.values.at(key)).accumulated, 3665, 1e-3);
  const int before = slot.platform.loop.firings;
  slot.platform.loop.advance(1000);
  EXPECT_EQ(slot.platform.loop.firings, before);
}

TEST(SystemWidgetController, ARunThatCannotBeReadBeginsAnew) {
  for (const char* text : {"3", "{}", R"({"accumulated":"x","laps":[]})"}) {
    Slot slot;
    auto opened = slot.store();
    slot.id = opened.create("Mine", StopwatchSettings{}).id;
    const std::string key = "dev.quellby.tavrin.stopwatch." + slot.id.text();
    slot.platform.defaults.set(key, JSONValue::parse(text));
    slot.controller = begun<SystemWidgetController>(slot.context, *opened.widget(slot.id));
    slot.controller->togglePanel();
    slot.press("Start");
    EXPECT_EQ(decode<StopwatchRun>(slot.platform.defaults.values.at(key)).accumulated, 0) << text;
  }
}

TEST(SystemWidgetController, TenthsEndWhenThePanelCloses) {
  Slot slot;
  slot.show<SystemWidgetController>(StopwatchSettings{});
  slot.controller->togglePanel();
  slot.press("Start");
  const int before = slot.platform.loop.firings;
  slot.platform.loop.advance(2);
  EXPECT_GE(slot.platform.loop.firings - before, 19);
  slot.platform.fakePopover.close();
  const int closed = slot.platform.loop.firings;
  slot.platform.loop.advance(10);
  EXPECT_LE(slot.platform.loop.firings - closed, 10);
}

TEST(NoteWidgetController, SavesWhatIsTypedAndTellsEveryone) {
  Slot slot;
  slot.show<NoteWidgetController>(NoteSettings{});
  EXPECT_EQ(slot.platform.tile.value, "Click to write a note");
  slot.controller->togglePanel();
  slot.editor().setPlainText("Milk");
  EXPECT_EQ(slot.platform.tile.value, "Milk"); // before it is saved
  EXPECT_EQ(slot.platform.center.count("dev.quellby.tavrin.widgetsChanged"), 0);
  slot.platform.loop.advance(1);
  EXPECT_EQ(slot.storedText(), "Milk");
  EXPECT_EQ(slot.platform.center.count("dev.quellby.tavrin.widgetsChanged"), 1);
}

TEST(NoteWidgetController, SavesWhenThePanelClosesAndWhenItGoes) {
  Slot slot;
  slot.show<NoteWidgetController>(NoteSettings{});
  slot.controller->togglePanel();
  slot.editor().setPlainText("Milk");
  slot.platform.fakePopover.close();
  EXPECT_EQ(slot.storedText(), "Milk");
  slot.controller->togglePanel();
  slot.editor().setPlainText("Bread");
  slot.drop();
  EXPECT_EQ(slot.storedText(), "Bread");
}

TEST(NoteWidgetController, KeepsTypedTextWhenAnotherIsWrittenMeanwhile) {
  Slot slot;
  slot.show<NoteWidgetController>(NoteSettings{"Milk", "#FBBF24"});
  slot.controller->togglePanel();
  slot.editor().setPlainText("Milk, bread");
  slot.setKind(NoteSettings{"Soap", "#FF0000"});
  EXPECT_EQ(slot.editor().toPlainText(), "Milk, bread");
  slot.platform.loop.advance(10);
  EXPECT_EQ(slot.storedText(), "Soap");
  slot.press("Keep Both");
  EXPECT_EQ(slot.storedText(), "Milk, bread\n\nSoap");
  EXPECT_EQ(slot.editor().toPlainText(), "Milk, bread\n\nSoap");
  EXPECT_EQ(slot.store().widget(slot.id)->kind.get<NoteSettings>()->colorHex, "#FF0000");
}

TEST(NoteWidgetController, FindsAChangeThatNobodyAnnounced) {
  for (const bool goes : {false, true}) {
    Slot slot;
    slot.show<NoteWidgetController>(NoteSettings{"Milk", "#FBBF24"});
    slot.controller->togglePanel();
    slot.editor().setPlainText("Milk, bread");
    auto opened = slot.store();
    auto other = *opened.widget(slot.id);
    other.name = "Shopping";
    other.kind = NoteSettings{"Soap", "#FBBF24"};
    opened.update(other);
    if (goes) {
      slot.drop();
    } else {
      slot.platform.loop.advance(1);
      EXPECT_EQ(slot.storedText(), "Soap");
      slot.platform.fakePopover.close();
    }
    EXPECT_EQ(slot.storedText(), "Milk, bread\n\nSoap") << goes;
    EXPECT_EQ(slot.store().widget(slot.id)->name, "Shopping");
  }
}

TEST(NoteWidgetController, DoesNotTurnAWidgetBackIntoANote) {
  Slot slot;
  slot.show<NoteWidgetController>(NoteSettings{});
  slot.controller->togglePanel();
  slot.editor().setPlainText("Milk");
  auto opened = slot.store();
  auto other = *opened.widget(slot.id);
  other.kind = ClockSettings{};
  opened.update(other);
  slot.drop();
  EXPECT_TRUE(slot.store().widget(slot.id)->kind.get<ClockSettings>());
}

} // namespace
} // namespace tavrin::test
