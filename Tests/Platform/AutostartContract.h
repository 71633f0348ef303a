#pragma once

#include "TavrinCore/Base/Errors.h"
#include "TavrinPlatform/Autostart.h"

#include <gtest/gtest.h>

/// What every Autostart does. A rig has `autostart()`, the same as the next process finds it, and
/// `refuse()`, after which nothing can be written.
namespace tavrin::test {

template <class Rig> class AutostartContract : public testing::Test {
protected:
  bool isOn() { return rig.autostart().status().isOn; }
  Rig rig;
};
TYPED_TEST_SUITE_P(AutostartContract);

TYPED_TEST_P(AutostartContract, IsKeptUntilItIsTurnedOff) {
  EXPECT_FALSE(this->isOn());
  const auto off = this->rig.autostart().status().sentence;
  for (int twice = 0; twice < 2; ++twice) {
    const auto status = this->rig.autostart().set(true);
    EXPECT_TRUE(status.isOn && status.isAvailable);
    EXPECT_NE(status.sentence, off);
    EXPECT_TRUE(this->isOn());
  }
  for (int twice = 0; twice < 2; ++twice) {
    EXPECT_EQ(this->rig.autostart().set(false).sentence, off);
    EXPECT_FALSE(this->isOn());
  }
}

TYPED_TEST_P(AutostartContract, SaysWhenItCouldNotWrite) {
  this->rig.refuse();
  EXPECT_THROW(this->rig.autostart().set(true), FileError);
  EXPECT_FALSE(this->isOn());
}

REGISTER_TYPED_TEST_SUITE_P(AutostartContract, IsKeptUntilItIsTurnedOff, SaysWhenItCouldNotWrite);

} // namespace tavrin::test
