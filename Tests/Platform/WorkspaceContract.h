#pragma once

#include "TavrinPlatform/Workspace.h"

#include <gtest/gtest.h>

/// What every Workspace does. A rig has `workspace()`, and `wake()`, `dayChange()`, `clockChange()`,
/// `setLowPower(flag)`, `setDark(flag)`, `setReducedMotion(flag)`, with the notices that belong to
/// them.
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
  EXPECT_EQ(wakes, 1);
  EXPECT_EQ(days + clocks, 0);
  this->rig.dayChange();
  EXPECT_EQ(days, 1);
  this->rig.clockChange();
  EXPECT_EQ(clocks, 1);
  EXPECT_EQ(wakes, 1);
  wake.reset();
  day.reset();
  clock.reset();
  this->rig.wake();
  this->rig.dayChange();
  this->rig.clockChange();
  EXPECT_EQ(wakes + days + clocks, 3);
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
  EXPECT_EQ(power, (std::vector{true, false}));
  EXPECT_EQ(appearances, 0);
  this->rig.setDark(true);
  EXPECT_TRUE(workspace.prefersDarkAppearance());
  EXPECT_EQ(appearances, 1);
  this->rig.setReducedMotion(true);
  EXPECT_TRUE(workspace.prefersReducedMotion());
  EXPECT_EQ(appearances, 2);
  low.reset();
  look.reset();
  this->rig.setDark(false);
  this->rig.setLowPower(true);
  EXPECT_EQ(appearances, 2);
  EXPECT_EQ(power.size(), 2U);
}

REGISTER_TYPED_TEST_SUITE_P(WorkspaceContract, EachNoticeReachesItsOwnObserversWhileTheyAreThere,
                            AStateIsOtherWhenItIsToldSo);

} // namespace tavrin::test
