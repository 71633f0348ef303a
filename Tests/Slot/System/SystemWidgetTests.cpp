#include "TavrinCore/Kinds/Runs/StopwatchSettings.h"
#include "TavrinCore/Kinds/System/ActivitySettings.h"
#include "TavrinCore/Kinds/System/BatterySettings.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinCore/Kinds/System/NetworkSettings.h"
#include "TavrinCore/Kinds/System/PetSettings.h"
#include "TavrinSlot/Controllers/SystemWidget.h"
#include "TavrinWidgetsUI/Runs/StopwatchPanelView.h"
#include "TavrinWidgetsUI/System/ClockPanelView.h"
#include "TavrinWidgetsUI/System/CountdownPanelView.h"
#include "TavrinWidgetsUI/System/PetPanelView.h"
#include "Tests/Slot/StoredSlot.h"

#include <QFontDatabase>
#include <QLabel>
#include <gmock/gmock.h>

namespace tavrin::test {
namespace {

DockWidget::Kind clockWithSeconds() {
  ClockSettings settings;
  settings.showsSeconds = true;
  return settings;
}

TEST(SystemWidgetController, DrawsAtOnceAndThenOncePerDisplayedSecond) {
  StoredSlot slot;
  slot.show<SystemWidgetController>(clockWithSeconds());
  EXPECT_EQ(slot.platform.tile.displays, 1);
  EXPECT_EQ(slot.platform.tile.name, "Clock");
  slot.platform.loop.advance(10);
  EXPECT_EQ(slot.platform.tile.displays, 11);
}

TEST(SystemWidgetController, AClockWithoutSecondsPaintsOnceAMinute) {
  StoredSlot slot;
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
  StoredSlot slot;
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
  StoredSlot slot;
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
  StoredSlot slot;
  slot.show<SystemWidgetController>(clockWithSeconds());
  auto* controller = slot.controller.get();
  slot.controller->togglePanel();
  EXPECT_TRUE(slot.panelAs<ClockPanelView>());
  slot.setKind(CountdownSettings{slot.now() + 90, true});
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
  StoredSlot slot;
  slot.show<SystemWidgetController>(StopwatchSettings{});
  slot.controller->togglePanel();
  slot.press("Start");
  slot.platform.loop.advance(65);
  slot.press("Lap");

  const std::string key = "dev.quellby.tavrin.stopwatch." + slot.id.text();
  ASSERT_TRUE(slot.platform.defaults.values.count(key));
  const auto run = decode<StopwatchRun>(slot.platform.defaults.values.at(key));
  EXPECT_EQ(run.startedAt, slot.now() - 65);
  ASSERT_EQ(run.laps.size(), 1U);
  EXPECT_NEAR(run.laps[0], 65, 1e-3);

  const auto widget = *slot.store().widget(slot.id);
  slot.controller.reset();
  slot.platform.fakePopover.close();
  slot.platform.loop.advance(3600);
  slot.controller = begun<SystemWidgetController>(slot.context(), widget);
  slot.controller->togglePanel();
  slot.press("Pause");
  EXPECT_NEAR(decode<StopwatchRun>(slot.platform.defaults.values.at(key)).accumulated, 3665, 1e-3);
  const int before = slot.platform.loop.firings;
  slot.platform.loop.advance(1000);
  EXPECT_EQ(slot.platform.loop.firings, before);
}

TEST(SystemWidgetController, ARunThatCannotBeReadBeginsAnew) {
  for (const char* text : {"3", "{}", R"({"accumulated":"x","laps":[]})"}) {
    StoredSlot slot;
    auto opened = slot.store();
    slot.id = opened.create("Mine", StopwatchSettings{}).id;
    const std::string key = "dev.quellby.tavrin.stopwatch." + slot.id.text();
    slot.platform.defaults.set(key, JSONValue::parse(text));
    slot.controller = begun<SystemWidgetController>(slot.context(), *opened.widget(slot.id));
    slot.controller->togglePanel();
    slot.press("Start");
    EXPECT_EQ(decode<StopwatchRun>(slot.platform.defaults.values.at(key)).accumulated, 0) << text;
  }
}

TEST(SystemWidgetController, TenthsEndWhenThePanelCloses) {
  StoredSlot slot;
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

TEST(SystemWidgetController, OpensTheDesktopsSystemMonitor) {
  StoredSlot slot;
  slot.show<SystemWidgetController>(ActivitySettings{});
  slot.controller->togglePanel();
  slot.press("Open Activity Monitor");
  EXPECT_EQ(slot.platform.fakeWorkspace.activityMonitors, 1);
  EXPECT_FALSE(slot.says("No system monitor is installed."));
  slot.platform.fakeWorkspace.hasActivityMonitor = false;
  slot.press("Open Activity Monitor");
  EXPECT_TRUE(slot.says("No system monitor is installed."));
}

TEST(SystemWidgetController, ChartsTellTheirFigures) {
  StoredSlot slot;
  const auto told = [&] {
    for (auto* each : slot.panel.rootView()->findChildren<QWidget*>())
      if (each->accessibleName() == "The last minute")
        return each->accessibleDescription();
    return QString();
  };
  slot.show<SystemWidgetController>(ActivitySettings{});
  slot.controller->togglePanel();
  EXPECT_THAT(told().toStdString(),
              testing::MatchesRegex("The processor is at [0-9]+%, on average [0-9]+%, at most "
                                    "[0-9]+%. Memory is at [0-9]+%, on average [0-9]+%, at most "
                                    "[0-9]+%."));
  StoredSlot other;
  other.show<SystemWidgetController>(NetworkSettings{});
  other.controller->togglePanel();
  for (auto* each : other.panel.rootView()->findChildren<QWidget*>())
    if (each->accessibleName() == "The last minute") {
      EXPECT_THAT(each->accessibleDescription().toStdString(),
                  testing::MatchesRegex("Download is at .*/s, on average .*/s, at most .*/s. "
                                        "Upload is at .*/s, on average .*/s, at most .*/s."));
      return;
    }
  FAIL() << "no chart";
}

TEST(SystemWidgetController, TheBatteryPanelAsksTheDevicesAnew) {
  StoredSlot slot;
  slot.show<SystemWidgetController>(BatterySettings{});
  const int before = slot.platform.devices.refreshes;
  slot.controller->togglePanel();
  EXPECT_EQ(slot.platform.devices.refreshes, before + 1);
  EXPECT_TRUE(slot.says("This computer has no battery."));
}

} // namespace
} // namespace tavrin::test
