#pragma once

#include "TavrinPlatform/GlobalShortcuts.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

/// What every GlobalShortcuts does. A rig has `shortcuts()`, `free(number)` and `taken()`, keys
/// that nobody and another program has, `press(hotkey)`, and `comesTrue(condition)`, which lets
/// presses arrive.
namespace tavrin::test {

template <class Rig> class GlobalShortcutsContract : public testing::Test {
protected:
  std::vector<GlobalShortcuts::Refusal> bind(const std::vector<GlobalShortcuts::Shortcut>& all) {
    return rig.shortcuts().bind(all, [this](const std::string& id) { pressed.push_back(id); });
  }
  /// Whether pressing it is the next thing heard of.
  bool hears(const Hotkey& hotkey, const std::string& id) {
    const auto before = pressed.size();
    rig.press(hotkey);
    return rig.comesTrue([&] { return pressed.size() > before; }) && pressed.back() == id;
  }
  std::vector<std::string> pressed;
  Rig rig;
};
TYPED_TEST_SUITE_P(GlobalShortcutsContract);

TYPED_TEST_P(GlobalShortcutsContract, ExactlyTheseAreBound) {
  const Hotkey one = this->rig.free(0), two = this->rig.free(1);
  EXPECT_TRUE(this->bind({{"a", "A", one}, {"b", "B", two}}).empty());
  EXPECT_TRUE(this->hears(two, "b"));
  EXPECT_TRUE(this->hears(one, "a"));
  EXPECT_TRUE(this->bind({{"c", "C", two}}).empty());
  const auto before = this->pressed.size();
  this->rig.press(one);
  EXPECT_TRUE(this->hears(two, "c"));
  EXPECT_EQ(this->pressed.size(), before + 1) << "a key that was given up";
  EXPECT_TRUE(this->bind({}).empty());
}

TYPED_TEST_P(GlobalShortcutsContract, WhatCannotBeBoundIsToldAndTheRestIs) {
  Hotkey bare = this->rig.free(1);
  bare.modifiers = {};
  const auto refusals = this->bind(
      {{"bare", "", bare}, {"taken", "", this->rig.taken()}, {"fine", "", this->rig.free(0)}});
  ASSERT_EQ(refusals.size(), 2U);
  EXPECT_EQ(refusals[0], (GlobalShortcuts::Refusal{"bare", GlobalShortcuts::lacksModifier}));
  EXPECT_EQ(refusals[1].id, "taken");
  EXPECT_FALSE(refusals[1].reason.empty());
  EXPECT_TRUE(this->hears(this->rig.free(0), "fine"));
}

REGISTER_TYPED_TEST_SUITE_P(GlobalShortcutsContract, ExactlyTheseAreBound,
                            WhatCannotBeBoundIsToldAndTheRestIs);

} // namespace tavrin::test
