#pragma once

#include "TavrinPlatform/DistributedNotificationCenter.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

/// What every DistributedNotificationCenter does. A rig has `center()` and `settle()`, which lets
/// what was posted arrive.
namespace tavrin::test {

template <class Rig> class NotificationCenterContract : public testing::Test {
protected:
  TokenPtr observe(const std::string& name, const std::string& who) {
    return rig.center().observe(name, [this, who](const std::optional<std::string>& object) {
      heard.push_back(who + " " + object.value_or("nothing"));
    });
  }
  std::vector<std::string> heard;
  Rig rig;
};
TYPED_TEST_SUITE_P(NotificationCenterContract);

TYPED_TEST_P(NotificationCenterContract, ANameReachesItsObserversWithItsObject) {
  auto one = this->observe("dev.quellby.test.one", "a");
  auto same = this->observe("dev.quellby.test.one", "b");
  auto other = this->observe("dev.quellby.test.other", "c");
  this->rig.center().post("dev.quellby.test.one", "Größe");
  this->rig.settle();
  // In no order among themselves.
  std::ranges::sort(this->heard);
  EXPECT_EQ(this->heard, (std::vector<std::string>{"a Größe", "b Größe"}));
  one.reset();
  this->rig.center().post("dev.quellby.test.one");
  this->rig.center().post("dev.quellby.test.none");
  this->rig.settle();
  EXPECT_EQ(this->heard.size(), 3U);
  EXPECT_EQ(this->heard.back(), "b nothing");
  this->rig.center().post("dev.quellby.test.other", "");
  this->rig.settle();
  EXPECT_EQ(this->heard.back(), "c ");
}

TYPED_TEST_P(NotificationCenterContract, AnObserverMayGoWhileItIsTold) {
  TokenPtr first, second;
  std::string told;
  first = this->rig.center().observe("dev.quellby.test.one", [&](const auto&) {
    told += '1';
    second.reset();
  });
  second = this->rig.center().observe("dev.quellby.test.one", [&](const auto&) {
    told += '2';
    first.reset();
  });
  this->rig.center().post("dev.quellby.test.one");
  this->rig.settle();
  this->rig.center().post("dev.quellby.test.one");
  this->rig.settle();
  EXPECT_TRUE(told == "11" || told == "22")
      << told << ": who went is told nothing, even of this one";
}

REGISTER_TYPED_TEST_SUITE_P(NotificationCenterContract, ANameReachesItsObserversWithItsObject,
                            AnObserverMayGoWhileItIsTold);

} // namespace tavrin::test
