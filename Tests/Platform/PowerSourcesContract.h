#pragma once

#include "TavrinPlatform/PowerSources.h"

#include <gtest/gtest.h>
#include <vector>

/// What every PowerSources does. A rig has `sources()`, `set(list)`, `tell()`, another change that
/// the system tells of, and `comesTrue(condition)`, which lets the system's answers come.
namespace tavrin::test {

template <class Rig> class PowerSourcesContract : public testing::Test {
protected:
  Rig rig;
};
TYPED_TEST_SUITE_P(PowerSourcesContract);

TYPED_TEST_P(PowerSourcesContract, ListsSourcesInOrderWithWhatIsKnown) {
  auto& sources = this->rig.sources();
  EXPECT_TRUE(sources.list().empty());
  const std::vector<PowerSource> list = {{50, 100, true, true, 30, 0},
                                         {99, 100, true, false, 0, 0}};
  this->rig.set(list);
  EXPECT_TRUE(this->rig.comesTrue([&] { return sources.list() == list; }));
  this->rig.set({});
  EXPECT_TRUE(this->rig.comesTrue([&] { return sources.list().empty(); }));
}

TYPED_TEST_P(PowerSourcesContract, TellsEveryObserverThatIsStillThere) {
  auto& sources = this->rig.sources();
  this->rig.set({{50, 100, true, true, 30, 0}});
  ASSERT_TRUE(this->rig.comesTrue([&] { return sources.list().size() == 1; }));
  int first = 0;
  int second = 0;
  auto one = sources.observe([&] { ++first; });
  auto two = sources.observe([&] { ++second; });
  this->rig.tell();
  ASSERT_TRUE(this->rig.comesTrue([&] { return first > 0 && second > 0; }));
  one.reset();
  const int before = first;
  second = 0;
  this->rig.tell();
  ASSERT_TRUE(this->rig.comesTrue([&] { return second > 0; }));
  EXPECT_EQ(first, before);
}

REGISTER_TYPED_TEST_SUITE_P(PowerSourcesContract, ListsSourcesInOrderWithWhatIsKnown,
                            TellsEveryObserverThatIsStillThere);

} // namespace tavrin::test
