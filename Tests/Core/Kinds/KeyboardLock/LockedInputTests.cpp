#include "TavrinCore/Kinds/KeyboardLock/LockedInput.h"

#include <gtest/gtest.h>
#include <set>

namespace tavrin {
namespace {

TEST(LockedInput, EveryEventTypeIsWhatTheTableSays) {
  const std::set<long> down = {1, 3, 25};
  const std::set<long> up = {2, 4, 26};
  const std::set<long> keys = {10, 11, 12, 14};
  const std::set<long> other = {8, 9, 13, 15, 16, 17, 21, 28, 33};
  for (long type = -3; type <= 40; ++type) {
    const auto wanted = down.contains(type)                             ? LockedInput::buttonDown
                        : up.contains(type)                             ? LockedInput::buttonUp
                        : keys.contains(type)                           ? LockedInput::key
                        : type < 1 || type > 34 || other.contains(type) ? LockedInput::other
                                                                        : LockedInput::pointer;
    EXPECT_EQ(lockedInput(type), wanted) << type;
  }
  EXPECT_EQ(lockedInput(0xFFFFFFFE), LockedInput::other);
}

TEST(LockedInput, KeysAreAlwaysSwallowedThePointerWhenChosen) {
  for (const auto input : {LockedInput::buttonDown, LockedInput::buttonUp, LockedInput::pointer}) {
    EXPECT_TRUE(isSwallowed(input, true));
    EXPECT_FALSE(isSwallowed(input, false));
  }
  for (const bool locksPointer : {true, false}) {
    EXPECT_TRUE(isSwallowed(LockedInput::key, locksPointer));
    EXPECT_FALSE(isSwallowed(LockedInput::other, locksPointer));
  }
}

TEST(UnlockHold, FillsWhilePressed) {
  constexpr Date start{100};
  UnlockHold hold{3, {}};
  EXPECT_EQ(hold.progress(start), 0);
  hold.press(start);
  const std::pair<double, double> cases[] = {{-5, 0}, {0, 0}, {1.5, 0.5}, {3, 1}, {9, 1}};
  for (const auto& [after, progress] : cases) {
    EXPECT_EQ(hold.progress(start + after), progress) << after;
    EXPECT_EQ(hold.isComplete(start + after), progress == 1) << after;
  }
  hold.release();
  EXPECT_FALSE(hold.isComplete(start + 9));
  for (const double duration : {0.0, -1.0}) {
    UnlockHold never{duration, start};
    EXPECT_FALSE(never.isComplete(start + 9));
  }
}

} // namespace
} // namespace tavrin
