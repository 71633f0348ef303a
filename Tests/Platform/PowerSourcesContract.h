#pragma once

#include "TavrinPlatform/PowerSources.h"

#include <gtest/gtest.h>

/// What every PowerSources does. A rig has `sources()`, `set(list)` and `tell()`, the system's
/// notice that something changed.
namespace tavrin::test {

template <class Rig> class PowerSourcesContract : public testing::Test {
protected:
  Rig rig;
};
TYPED_TEST_SUITE_P(PowerSourcesContract);

TYPED_TEST_P(PowerSourcesContract, ListsSourcesInOrderWithWhatIsKnown) {
  EXPECT_TRUE(this->rig.sources().list().empty());
  const std::vector<PowerSource> list = {
      {}, {50, 100, true, true, 30, 0}, {99, 100, false, false, 0, -1}};
  this->rig.set(list);
  EXPECT_EQ(this->rig.sources().list(), list);
}

TYPED_TEST_P(PowerSourcesContract, TellsEveryObserverThatIsStillThere) {
  int first = 0;
  int second = 0;
  auto one = this->rig.sources().observe([&] { ++first; });
  auto two = this->rig.sources().observe([&] { ++second; });
  this->rig.tell();
  one.reset();
  this->rig.tell();
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 2);
}

REGISTER_TYPED_TEST_SUITE_P(PowerSourcesContract, ListsSourcesInOrderWithWhatIsKnown,
                            TellsEveryObserverThatIsStillThere);

} // namespace tavrin::test
