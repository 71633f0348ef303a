#include "TavrinCore/Kinds/KeyboardLock/KeyboardLockSettings.h"
#include "TavrinSlot/Controllers/KeyboardLockWidget.h"
#include "Tests/Slot/StoredSlot.h"

#include <QApplication>

namespace tavrin::test {
namespace {

int overlays() {
  int count = 0;
  for (auto* window : QApplication::topLevelWidgets())
    count += window->isVisible() && window->windowTitle() == "Tavrin Keyboard Lock" ? 1 : 0;
  return count;
}

TEST(KeyboardLockWidgetController, CoversTheScreensWhileLocked) {
  StoredSlot slot;
  slot.show<KeyboardLockWidgetController>(KeyboardLockSettings{});
  EXPECT_EQ(slot.platform.tile.value, "Unlocked");
  slot.controller->togglePanel();
  EXPECT_TRUE(slot.says("Holds the keyboard and the trackpad while you clean them."));
  slot.press("Lock");
  EXPECT_EQ(overlays(), 0) << "not before the system agrees";
  slot.platform.blocker.callbacks.started(InputBlocker::Outcome::holding);
  EXPECT_EQ(overlays(), static_cast<int>(QGuiApplication::screens().size()));
  EXPECT_FALSE(slot.panel.isShown());
  EXPECT_EQ(slot.platform.tile.value, "Locked");
  slot.platform.loop.advance(121);
  EXPECT_EQ(overlays(), 0);
  EXPECT_EQ(slot.platform.tile.value, "Unlocked");
}

TEST(KeyboardLockWidgetController, ShowsWhyItWasRefused) {
  StoredSlot slot;
  slot.show<KeyboardLockWidgetController>(KeyboardLockSettings{});
  slot.controller->togglePanel();
  slot.platform.blocker.screenLocked = true;
  slot.press("Lock");
  EXPECT_TRUE(slot.says("The screen is locked, so the keyboard stays free."));
  EXPECT_EQ(overlays(), 0);
}

TEST(KeyboardLockWidgetController, ALockEndsWithItsWidget) {
  StoredSlot slot;
  slot.show<KeyboardLockWidgetController>(KeyboardLockSettings{});
  slot.controller->togglePanel();
  slot.press("Lock");
  slot.platform.blocker.callbacks.started(InputBlocker::Outcome::holding);
  slot.controller.reset();
  EXPECT_FALSE(slot.platform.blocker.isHeld());
  EXPECT_EQ(overlays(), 0);
}

} // namespace
} // namespace tavrin::test
