#pragma once

#include "TavrinPlatform/DockProcess.h"

#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

/// What every DockProcess does. A rig has `process()`, `add(number, name, user, age, hasEnded)`
/// for a process of the system's list, and `script(text)`, the program in killall's place.
namespace tavrin::test {

template <class Rig> class DockProcessContract : public testing::Test {
protected:
  std::optional<DockProcess::Running> running() { return rig.process().running(); }
  Rig rig;
  const uid_t me = ::getuid();
};
TYPED_TEST_SUITE_P(DockProcessContract);

TYPED_TEST_P(DockProcessContract, IsTheFirstOfExactlyThatNameAndUser) {
  EXPECT_FALSE(this->running());
  this->rig.add(30, "Docker", this->me, 5, false);
  this->rig.add(31, "dock", this->me, 5, false);
  this->rig.add(40, "Dock", this->me + 1, 5, false);
  this->rig.add(41, "Dock", this->me, 5, true);
  EXPECT_FALSE(this->running());
  this->rig.add(900, "Dock", this->me, 2, false);
  this->rig.add(77, "Dock", this->me, 100, false);
  ASSERT_TRUE(this->running());
  EXPECT_EQ(this->running()->id, 77);
  ASSERT_TRUE(this->running()->age);
  EXPECT_NEAR(*this->running()->age, 100, 2);
}

TYPED_TEST_P(DockProcessContract, KillAllTellsStatusAndReason) {
  this->rig.script("#!/bin/sh\necho noise; echo \"no $1 here\" >&2; exit 3\n");
  const auto result = this->rig.process().killAll();
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_EQ(result.standardError, "no Dock here\n");
  this->rig.script("#!/bin/sh\nprintf '\\377' >&2\n");
  EXPECT_EQ(this->rig.process().killAll().standardError, std::nullopt);
}

TYPED_TEST_P(DockProcessContract, ItsClockGoesOnWhileItSleeps) {
  const double before = this->rig.process().uptime();
  this->rig.process().sleep(0.02);
  EXPECT_GE(this->rig.process().uptime() - before, 0.02);
}

REGISTER_TYPED_TEST_SUITE_P(DockProcessContract, IsTheFirstOfExactlyThatNameAndUser,
                            KillAllTellsStatusAndReason, ItsClockGoesOnWhileItSleeps);

} // namespace tavrin::test
