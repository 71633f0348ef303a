#pragma once

#include "TavrinPlatform/SoundPlayer.h"

#include <gtest/gtest.h>

/// What every SoundPlayer does. A rig has `player()`, `end()`, after which there is none,
/// `begun()`, how many sounds have begun, and `comesTrue(condition)`.
namespace tavrin::test {

template <class Rig> class SoundPlayerContract : public testing::Test {
protected:
  Rig rig;
};
TYPED_TEST_SUITE_P(SoundPlayerContract);

TYPED_TEST_P(SoundPlayerContract, ASoundBeginsAndNobodyWaitsForItsEnd) {
  this->rig.player().play("Glass");
  EXPECT_TRUE(this->rig.comesTrue([&] { return this->rig.begun() == 1; }));
  this->rig.player().play("Submarine");
  this->rig.end();
  EXPECT_LE(this->rig.begun(), 2);
}

TYPED_TEST_P(SoundPlayerContract, ANameWithoutASoundIsHarmless) {
  this->rig.player().play("");
  this->rig.player().play("No such sound / \xff");
  this->rig.end();
}

REGISTER_TYPED_TEST_SUITE_P(SoundPlayerContract, ASoundBeginsAndNobodyWaitsForItsEnd,
                            ANameWithoutASoundIsHarmless);

} // namespace tavrin::test
