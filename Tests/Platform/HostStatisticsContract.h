#pragma once

#include "TavrinPlatform/HostStatistics.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

/// What every HostStatistics does. A rig has `statistics()`, `set(CPULoad)`, `set(MemoryLoad)` (in
/// whole pages), `setLinks` and `fail()`, after which nothing can be read.
namespace tavrin::test {

struct LinkCounters {
  std::string name;
  std::uint32_t received = 0;
  std::uint32_t sent = 0;
  bool operator==(const LinkCounters&) const = default;
};

template <class Rig> class HostStatisticsContract : public testing::Test {
protected:
  std::vector<LinkCounters> links() {
    std::vector<LinkCounters> found;
    rig.statistics().eachLink(
        [&](std::string_view name, std::uint64_t received, std::uint64_t sent) {
          found.push_back({std::string(name), std::uint32_t(received), std::uint32_t(sent)});
        });
    return found;
  }
  Rig rig;
};
TYPED_TEST_SUITE_P(HostStatisticsContract);

TYPED_TEST_P(HostStatisticsContract, EachCounterInItsPlace) {
  this->rig.set(CPULoad{11, 22, 33, 44});
  EXPECT_EQ(this->rig.statistics().cpuLoad(), (CPULoad{11, 22, 33, 44}));
  const MemoryLoad memory{3 * 16384, 8ULL << 30};
  this->rig.set(memory);
  EXPECT_EQ(this->rig.statistics().memoryLoad(), memory);
}

TYPED_TEST_P(HostStatisticsContract, EveryLinkInTheSystemsOrder) {
  const std::vector<LinkCounters> links = {{"lo0", 1, 1}, {"en1", 4'000'000'000, 7}, {"en0", 0, 0}};
  this->rig.setLinks(links);
  EXPECT_EQ(this->links(), links);
}

TYPED_TEST_P(HostStatisticsContract, WhatCannotBeReadHasNoValue) {
  this->rig.fail();
  EXPECT_EQ(this->rig.statistics().cpuLoad(), std::nullopt);
  EXPECT_EQ(this->rig.statistics().memoryLoad(), std::nullopt);
  EXPECT_TRUE(this->links().empty());
}

REGISTER_TYPED_TEST_SUITE_P(HostStatisticsContract, EachCounterInItsPlace,
                            EveryLinkInTheSystemsOrder, WhatCannotBeReadHasNoValue);

} // namespace tavrin::test
