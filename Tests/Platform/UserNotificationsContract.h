#pragma once

#include "TavrinPlatform/UserNotificationCenter.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

/// What every UserNotificationCenter does. A rig has `center()` and `shownAfter(seconds)`, the
/// titles of the notices that the user has seen once so much time has passed.
namespace tavrin::test {

template <class Rig> class UserNotificationsContract : public testing::Test {
protected:
  Rig rig;
};
TYPED_TEST_SUITE_P(UserNotificationsContract);

using Titles = std::vector<std::string>;

TYPED_TEST_P(UserNotificationsContract, ARequestTakesThePlaceOfItsNamesake) {
  auto& center = this->rig.center();
  center.add({"timer", "early", "body", 10});
  center.add({"other", "other", "body", 20});
  center.add({"timer", "late", "body", 30});
  EXPECT_EQ(this->rig.shownAfter(15), Titles{});
  EXPECT_EQ(this->rig.shownAfter(10), Titles{"other"});
  EXPECT_EQ(this->rig.shownAfter(10), (Titles{"other", "late"}));
}

TYPED_TEST_P(UserNotificationsContract, WhatIsRemovedIsNotShown) {
  auto& center = this->rig.center();
  center.add({"one", "one", "body", 10});
  center.add({"two", "two", "body", 10});
  center.removePending("one");
  center.removePending("never there");
  EXPECT_EQ(this->rig.shownAfter(15), Titles{"two"});
}

REGISTER_TYPED_TEST_SUITE_P(UserNotificationsContract, ARequestTakesThePlaceOfItsNamesake,
                            WhatIsRemovedIsNotShown);

} // namespace tavrin::test
