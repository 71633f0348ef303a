#include "TavrinCore/Kinds/Fans/FanSettings.h"
#include "TavrinCore/Kinds/KeyboardLock/KeyboardLockSettings.h"
#include "TavrinCore/Kinds/System/ActivitySettings.h"
#include "TavrinCore/Kinds/System/BatterySettings.h"
#include "TavrinSlot/Controllers/FanWidget.h"
#include "TavrinSlot/Controllers/KeyboardLockWidget.h"
#include "TavrinSlot/Controllers/SystemWidget.h"

#include "TavrinSlot/Base/DockPanelPresenter.h"
#include "TavrinSlot/Base/DockTileRenderer.h"
#include "TavrinStorage/StoragePath.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/PanelWords.h"
#include "Tests/Support/SlotRig.h"

#include <QAbstractButton>
#include <QApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

struct Slot {
  Slot() { platform.files.variables["TAVRIN_APP_SUPPORT_DIR"] = folder.path().string(); }
  template <class Controller> void show(DockWidget::Kind kind) {
    auto store = this->store();
    id = store.create("Mine", std::move(kind)).id;
    controller = begun<Controller>(context, *store.widget(id));
  }
  WidgetStore store() {
    return WidgetStore(StoragePath(platform.files, platform.bundle).widgetsFileURL());
  }
  QAbstractButton* button(const QString& title) {
    for (auto* found : panel.rootView()->findChildren<QAbstractButton*>())
      if (found->text() == title)
        return found;
    return nullptr;
  }
  bool says(const QString& words) { return shows(*panel.rootView(), words); }
  static int overlays() {
    int count = 0;
    for (auto* window : QApplication::topLevelWidgets())
      count += window->isVisible() && window->windowTitle() == "Tavrin Keyboard Lock" ? 1 : 0;
    return count;
  }

  TemporaryFolder folder;
  FakePlatform platform;
  DockTileRenderer tile{platform.tile};
  DockPanelPresenter panel{platform.fakePopover, platform.geometry};
  SlotContext context{platform, tile, panel, [] {}};
  UUID id;
  Living<WidgetController> controller;
};

TEST(KeyboardLockWidgetController, CoversTheScreensWhileLocked) {
  Slot slot;
  slot.show<KeyboardLockWidgetController>(KeyboardLockSettings{});
  EXPECT_EQ(slot.platform.tile.value, "Unlocked");
  slot.controller->togglePanel();
  EXPECT_TRUE(slot.says("Holds the keyboard and the trackpad while you clean them."));
  slot.button("Lock")->click();
  EXPECT_EQ(Slot::overlays(), 0) << "not before the system agrees";
  slot.platform.blocker.callbacks.started(InputBlocker::Outcome::holding);
  EXPECT_EQ(Slot::overlays(), static_cast<int>(QGuiApplication::screens().size()));
  EXPECT_FALSE(slot.panel.isShown());
  EXPECT_EQ(slot.platform.tile.value, "Locked");
  slot.platform.loop.advance(121);
  EXPECT_EQ(Slot::overlays(), 0);
  EXPECT_EQ(slot.platform.tile.value, "Unlocked");
}

TEST(KeyboardLockWidgetController, ShowsWhyItWasRefused) {
  Slot slot;
  slot.show<KeyboardLockWidgetController>(KeyboardLockSettings{});
  slot.controller->togglePanel();
  slot.platform.blocker.screenLocked = true;
  slot.button("Lock")->click();
  EXPECT_TRUE(slot.says("The screen is locked, so the keyboard stays free."));
  EXPECT_EQ(Slot::overlays(), 0);
}

TEST(KeyboardLockWidgetController, ALockEndsWithItsWidget) {
  Slot slot;
  slot.show<KeyboardLockWidgetController>(KeyboardLockSettings{});
  slot.controller->togglePanel();
  slot.button("Lock")->click();
  slot.platform.blocker.callbacks.started(InputBlocker::Outcome::holding);
  slot.controller.reset();
  EXPECT_FALSE(slot.platform.blocker.isHeld());
  EXPECT_EQ(Slot::overlays(), 0);
}

TEST(FanWidgetController, SwitchesFromThePanel) {
  Slot slot;
  slot.platform.fakeSMC.addFans(2);
  slot.show<FanWidgetController>(FanSettings{});
  slot.platform.loop.runBackground();
  slot.controller->togglePanel();
  EXPECT_TRUE(slot.says("The desktop decides how fast they turn."));
  slot.button("Full speed")->click();
  EXPECT_EQ(slot.platform.fans.asked, std::vector<bool>{true});
  slot.platform.fans.answer();
  EXPECT_TRUE(slot.says("The fans stay at their maximum."));
}

TEST(FanWidgetController, AMachineWithoutFansSaysSo) {
  Slot slot;
  slot.platform.fakeSMC.addFans(0);
  slot.show<FanWidgetController>(FanSettings{});
  slot.platform.loop.runBackground();
  slot.controller->togglePanel();
  EXPECT_TRUE(slot.says("This computer has no fans."));
}

TEST(SystemWidgetController, OpensTheDesktopsSystemMonitor) {
  Slot slot;
  slot.show<SystemWidgetController>(ActivitySettings{});
  slot.controller->togglePanel();
  slot.button("Open Activity Monitor")->click();
  EXPECT_EQ(slot.platform.fakeWorkspace.activityMonitors, 1);
  EXPECT_FALSE(slot.says("No system monitor is installed."));
  slot.platform.fakeWorkspace.hasActivityMonitor = false;
  slot.button("Open Activity Monitor")->click();
  EXPECT_TRUE(slot.says("No system monitor is installed."));
}

TEST(SystemWidgetController, ChartsTellTheirFigures) {
  Slot slot;
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
  Slot other;
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
  Slot slot;
  slot.show<SystemWidgetController>(BatterySettings{});
  const int before = slot.platform.devices.refreshes;
  slot.controller->togglePanel();
  EXPECT_EQ(slot.platform.devices.refreshes, before + 1);
  EXPECT_TRUE(slot.says("This computer has no battery."));
}

} // namespace
} // namespace tavrin::test
