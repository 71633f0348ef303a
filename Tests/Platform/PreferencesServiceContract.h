#pragma once

#include "TavrinPlatform/PreferencesService.h"

#include <gtest/gtest.h>

/// What every PreferencesService does. A rig has `service()`, `store(domain, key, value)`, as
/// another program leaves a value on disk, and `stored(domain, key)`.
namespace tavrin::test {

template <class Rig> class PreferencesServiceContract : public testing::Test {
protected:
  PreferencesService& service() { return rig.service(); }
  Rig rig;
  const std::string dock = "com.apple.dock";
};
TYPED_TEST_SUITE_P(PreferencesServiceContract);

inline PropertyList everySort() {
  return PropertyList::Dictionary{{"flag", true},
                                  {"number", 1},
                                  {"fraction", 0.5},
                                  {"text", "Größe"},
                                  {"bytes", Data::fromText(std::string_view("\0\1", 2))},
                                  {"list", PropertyList::Array{"a", PropertyList::Dictionary{}}}};
}

TYPED_TEST_P(PreferencesServiceContract, ReadsWhatIsStoredWithItsSort) {
  EXPECT_EQ(this->service().copyAppValue("tile", this->dock), std::nullopt);
  this->rig.store(this->dock, "tile", everySort());
  this->service().synchronize(this->dock);
  EXPECT_EQ(this->service().copyAppValue("tile", this->dock), everySort());
  EXPECT_EQ(this->service().copyAppValue("tile", "dev.quellby.other"), std::nullopt);
}

TYPED_TEST_P(PreferencesServiceContract, WhatWasSetIsReadAtOnceAndStoredBySynchronize) {
  this->rig.store(this->dock, "autohide", true);
  this->service().setAppValue("tile", everySort(), this->dock);
  EXPECT_EQ(this->service().copyAppValue("tile", this->dock), everySort());
  EXPECT_EQ(this->rig.stored(this->dock, "tile"), std::nullopt);
  EXPECT_TRUE(this->service().synchronize(this->dock));
  EXPECT_EQ(this->rig.stored(this->dock, "tile"), everySort());
  EXPECT_EQ(this->rig.stored(this->dock, "autohide"), PropertyList(true));
}

TYPED_TEST_P(PreferencesServiceContract, SaysWhenItCouldNotWrite) {
  this->service().setAppValue("tile", 1, this->dock);
  this->rig.refuse();
  EXPECT_FALSE(this->service().synchronize(this->dock));
}

REGISTER_TYPED_TEST_SUITE_P(PreferencesServiceContract, ReadsWhatIsStoredWithItsSort,
                            WhatWasSetIsReadAtOnceAndStoredBySynchronize, SaysWhenItCouldNotWrite);

} // namespace tavrin::test
