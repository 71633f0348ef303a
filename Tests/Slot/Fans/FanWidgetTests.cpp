#include "TavrinCore/Kinds/Fans/FanSettings.h"
#include "TavrinSlot/Controllers/FanWidget.h"
#include "Tests/Slot/StoredSlot.h"

namespace tavrin::test {
namespace {

TEST(FanWidgetController, SwitchesFromThePanel) {
  StoredSlot slot;
  slot.platform.fakeSMC.addFans(2);
  slot.show<FanWidgetController>(FanSettings{});
  slot.platform.loop.runBackground();
  slot.controller->togglePanel();
  EXPECT_TRUE(slot.says("The desktop decides how fast they turn."));
  slot.press("Full speed");
  EXPECT_EQ(slot.platform.fans.asked, std::vector<bool>{true});
  slot.platform.fans.answer();
  EXPECT_TRUE(slot.says("The fans stay at their maximum."));
}

TEST(FanWidgetController, AMachineWithoutFansSaysSo) {
  StoredSlot slot;
  slot.platform.fakeSMC.addFans(0);
  slot.show<FanWidgetController>(FanSettings{});
  slot.platform.loop.runBackground();
  slot.controller->togglePanel();
  EXPECT_TRUE(slot.says("This computer has no fans."));
}

} // namespace
} // namespace tavrin::test
