#pragma once

#include "TavrinPlatform/MainBundle.h"

#include <gtest/gtest.h>

/// What every MainBundle does. A rig has `bundle()`, in the folder "Tavrin Slot 3.app", with
/// "CFBundleIdentifier" of "dev.quellby.Tavrin.Slot3", "TavrinSlot" of 3, "TavrinDataFolder" of
/// "TavrinDev", "Flag" of true and "Half" of 0.5; and `bare()`, of a program outside a bundle.
namespace tavrin::test {

template <class Rig> class MainBundleContract : public testing::Test {
protected:
  Rig rig;
};
TYPED_TEST_SUITE_P(MainBundleContract);

TYPED_TEST_P(MainBundleContract, EntriesAreOfTheirSortOrNotThere) {
  auto& bundle = this->rig.bundle();
  ASSERT_TRUE(bundle.path());
  EXPECT_EQ(bundle.path()->filename(), "Tavrin Slot 3.app");
  EXPECT_EQ(bundle.identifier(), "dev.quellby.Tavrin.Slot3");
  EXPECT_EQ(bundle.string("TavrinDataFolder"), "TavrinDev");
  EXPECT_EQ(bundle.integer("TavrinSlot"), 3);
  EXPECT_EQ(bundle.string("TavrinSlot"), std::nullopt) << "a number is no text";
  for (const char* key : {"TavrinDataFolder", "Flag", "Half", "None"})
    EXPECT_EQ(bundle.integer(key), std::nullopt) << key;
}

TYPED_TEST_P(MainBundleContract, OutsideOfOneThereIsNothing) {
  auto& bundle = this->rig.bare();
  EXPECT_EQ(bundle.path(), std::nullopt);
  EXPECT_EQ(bundle.identifier(), std::nullopt);
  EXPECT_EQ(bundle.integer("TavrinSlot"), std::nullopt);
}

REGISTER_TYPED_TEST_SUITE_P(MainBundleContract, EntriesAreOfTheirSortOrNotThere,
                            OutsideOfOneThereIsNothing);

} // namespace tavrin::test
