#pragma once

#include "TavrinPlatform/InputBlocker.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

/// What every InputBlocker does. A rig has `blocker()`, `press()`, a key of the user's,
/// `takeKeyboard()`, after which another program has it, `lockScreen()`, and
/// `comesTrue(condition)`, which lets time pass.
namespace tavrin::test {

template <class Rig> class InputBlockerContract : public testing::Test {
protected:
  using Outcome = InputBlocker::Outcome;
  static constexpr int keyDown = 10;
  TokenPtr hold(double longest = 0) {
    return rig.blocker().hold(true, longest,
                              {[this](Outcome outcome) { outcomes.push_back(outcome); },
                               [this](int type) { inputs.push_back(type); }, [this] { ++ended; }});
  }
  bool holds() {
    return rig.comesTrue([&] { return outcomes == std::vector{Outcome::holding}; });
  }
  bool hears() {
    return rig.comesTrue([&] {
      rig.press();
      return std::ranges::find(inputs, keyDown) != inputs.end();
    });
  }
  Rig rig;
  std::vector<Outcome> outcomes;
  std::vector<int> inputs;
  int ended = 0;
};
TYPED_TEST_SUITE_P(InputBlockerContract);

TYPED_TEST_P(InputBlockerContract, HoldsUntilItsTokenGoesAndSaysSoOnceAndLater) {
  ASSERT_TRUE(this->rig.blocker().isPermitted());
  EXPECT_FALSE(this->rig.blocker().isScreenLocked());
  auto token = this->hold();
  EXPECT_TRUE(this->outcomes.empty()) << "before the call has returned";
  ASSERT_TRUE(this->holds());
  EXPECT_TRUE(this->hears());
  token.reset();
  this->inputs.clear();
  this->rig.press();
  this->outcomes.clear();
  token = this->hold();
  ASSERT_TRUE(this->holds()) << "the one before has let go";
  EXPECT_TRUE(this->hears());
  EXPECT_EQ(this->ended, 0) << "whoever lets go is not told";
}

TYPED_TEST_P(InputBlockerContract, WhoHasGoneIsToldNothing) {
  this->hold().reset();
  auto token = this->rig.blocker().hold(true, 0, {[](auto) {}, [](int) {}, [] {}});
  this->rig.press();
  EXPECT_FALSE(this->rig.comesTrue([&] { return this->outcomes.size() + this->inputs.size() > 0; },
                                   300));
}

TYPED_TEST_P(InputBlockerContract, EndsByItselfAfterItsTime) {
  const auto token = this->hold(1);
  ASSERT_TRUE(this->holds());
  ASSERT_TRUE(this->rig.comesTrue([&] { return this->ended > 0; }));
  this->inputs.clear();
  this->rig.press();
  EXPECT_FALSE(this->rig.comesTrue([&] { return !this->inputs.empty() || this->ended > 1; }, 300));
}

TYPED_TEST_P(InputBlockerContract, WhatAnotherProgramHoldsIsNotTaken) {
  this->rig.takeKeyboard();
  const auto token = this->hold();
  ASSERT_TRUE(this->rig.comesTrue([&] { return !this->outcomes.empty(); }));
  EXPECT_EQ(this->outcomes, std::vector{InputBlocker::Outcome::secureInput});
  EXPECT_EQ(this->ended, 0) << "what has not begun does not end";
}

TYPED_TEST_P(InputBlockerContract, TheEndOfTheNeedIsToldWhileTheTokenLives) {
  int first = 0, second = 0;
  auto one = this->rig.blocker().observeEndOfNeed([&] { ++first; });
  const auto two = this->rig.blocker().observeEndOfNeed([&] { ++second; });
  ASSERT_TRUE(this->rig.comesTrue([&] {
    this->rig.lockScreen();
    return first > 0 && second > 0;
  }));
  one.reset();
  first = second = 0;
  ASSERT_TRUE(this->rig.comesTrue([&] {
    this->rig.lockScreen();
    return second > 0;
  }));
  EXPECT_EQ(first, 0);
}

REGISTER_TYPED_TEST_SUITE_P(InputBlockerContract, HoldsUntilItsTokenGoesAndSaysSoOnceAndLater,
                            WhoHasGoneIsToldNothing, EndsByItselfAfterItsTime,
                            WhatAnotherProgramHoldsIsNotTaken,
                            TheEndOfTheNeedIsToldWhileTheTokenLives);

} // namespace tavrin::test
