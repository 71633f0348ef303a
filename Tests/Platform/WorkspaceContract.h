#pragma once

#include "TavrinPlatform/Workspace.h"

#include <gtest/gtest.h>

/// What every Workspace does. A rig has `workspace()`, and `wake()`, `dayChange()`, `clockChange()`,
/// `setLowPower(flag)`, `setDark(flag)`, `setReducedMotion(flag)`, with the notices that belong to
/// them, and `comesTrue(condition)`. Another day may be one by a change of the clock.
namespace tavrin::test {

template <class Rig> class WorkspaceContract : public testing::Test {
protected:
  Rig rig;
};
TYPED_TEST_SUITE_P(WorkspaceContract);

TYPED_TEST_P(WorkspaceContract, EachNoticeReachesItsOwnObserversWhileTheyAreThere) {
  auto& workspace = this->rig.workspace();
  int wakes = 0, days = 0, clocks = 0;
  auto wake = workspace.observeWake([&] { ++wakes; });
  auto day = workspace.observeDayChange([&] { ++days; });
  auto clock = workspace.observeClockChange([&] { ++clocks; });
  this->rig.wake();
  ASSERT_TRUE(this->rig.comesTrue([&] { return wakes == 1; }));
  EXPECT_EQ(days + clocks, 0);
  this->rig.dayChange();
  ASSERT_TRUE(this->rig.comesTrue([&] { return days == 1; }));
  const int before = clocks;
  this->rig.clockChange();
  ASSERT_TRUE(this->rig.comesTrue([&] { return clocks == before + 1; }));
  EXPECT_EQ(wakes, 1);
  EXPECT_EQ(days, 1);
  wake.reset();
  day.reset();
  clock.reset();
  int others = 0;
  wake = workspace.observeWake([&] { ++others; });
  const int all = wakes + days + clocks;
  this->rig.clockChange();
  this->rig.wake();
  ASSERT_TRUE(this->rig.comesTrue([&] { return others == 1; }));
  EXPECT_EQ(wakes + days + clocks, all);
}

TYPED_TEST_P(WorkspaceContract, AStateIsOtherWhenItIsToldSo) {
  auto& workspace = this->rig.workspace();
  std::vector<bool> power;
  int appearances = 0;
  auto low = workspace.observeLowPowerMode([&] { power.push_back(workspace.isLowPowerMode()); });
  auto look = workspace.observeAppearance([&] { ++appearances; });
  EXPECT_FALSE(workspace.isLowPowerMode() || workspace.prefersDarkAppearance() ||
               workspace.prefersReducedMotion());
  this->rig.setLowPower(true);
  this->rig.setLowPower(false);
  ASSERT_TRUE(this->rig.comesTrue([&] { return power.size() == 2; }));
  EXPECT_EQ(power, (std::vector{true, false}));
  EXPECT_EQ(appearances, 0);
  this->rig.setDark(true);
  ASSERT_TRUE(this->rig.comesTrue([&] { return appearances == 1; }));
  EXPECT_TRUE(workspace.prefersDarkAppearance());
  this->rig.setReducedMotion(true);
  ASSERT_TRUE(this->rig.comesTrue([&] { return appearances == 2; }));
  EXPECT_TRUE(workspace.prefersReducedMotion());
  low.reset();
  look.reset();
  this->rig.setDark(false);
  this->rig.setLowPower(true);
  EXPECT_TRUE(this->rig.comesTrue(
      [&] { return !workspace.prefersDarkAppearance() && workspace.isLowPowerMode(); }));
  EXPECT_EQ(appearances, 2);
  EXPECT_EQ(power.size(), 2U);
}

REGISTER_TYPED_TEST_SUITE_P(WorkspaceContract, EachNoticeReachesItsOwnObserversWhileTheyAreThere,
                            AStateIsOtherWhenItIsToldSo);

} // namespace tavrin::test
