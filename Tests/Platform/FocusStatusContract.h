#pragma once

#include "TavrinPlatform/FocusStatusProvider.h"

#include <gtest/gtest.h>
#include <thread>

/// What every FocusStatusProvider does. A rig has `focus()` and `set(flag)`; before that the state
/// cannot be read.
namespace tavrin::test {

template <class Rig> class FocusStatusContract : public testing::Test {
protected:
  Rig rig;
};
TYPED_TEST_SUITE_P(FocusStatusContract);

TYPED_TEST_P(FocusStatusContract, SaysWhatTheSystemSaysNow) {
  EXPECT_EQ(this->rig.focus().isFocused(), std::nullopt);
  for (const bool flag : {true, false, true}) {
    this->rig.set(flag);
    EXPECT_TRUE(this->rig.focus().isAuthorized());
    EXPECT_EQ(this->rig.focus().isFocused(), flag);
  }
}

TYPED_TEST_P(FocusStatusContract, AnyThreadMayAsk) {
  this->rig.set(true);
  std::optional<bool> answer;
  std::thread([&] { answer = this->rig.focus().isFocused(); }).join();
  EXPECT_EQ(answer, true);
  EXPECT_EQ(this->rig.focus().isFocused(), true);
}

REGISTER_TYPED_TEST_SUITE_P(FocusStatusContract, SaysWhatTheSystemSaysNow, AnyThreadMayAsk);

} // namespace tavrin::test
