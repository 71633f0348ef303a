#pragma once

#include "TavrinCore/Base/Date.h"

#include <algorithm>
#include <optional>

namespace tavrin {

/// What an input event is to the keyboard lock.
enum class LockedInput { key, buttonDown, buttonUp, pointer, other };

/// By the event type numbers of Quartz (CGEventType); what is outside 1...34 is `other`.
constexpr LockedInput lockedInput(long eventType) {
  switch (eventType) {
  case 1: // left, right and other button down
  case 3:
  case 25:
    return LockedInput::buttonDown;
  case 2: // and up
  case 4:
  case 26:
    return LockedInput::buttonUp;
  case 10: // key down, key up, modifiers, system-defined keys
  case 11:
  case 12:
  case 14:
    return LockedInput::key;
  case 5: // moves and drags
  case 6:
  case 7:
  case 27:
  case 22: // scroll wheel
  case 23: // tablet
  case 24:
  case 18: // gestures
  case 19:
  case 20:
  case 29:
  case 30:
  case 31:
  case 32:
  case 34:
    return LockedInput::pointer;
  default:
    return LockedInput::other;
  }
}

constexpr bool isSwallowed(LockedInput input, bool locksPointer) {
  return input == LockedInput::key || (input != LockedInput::other && locksPointer);
}

/// A click that is held to unlock.
struct UnlockHold {
  /// Seconds.
  double duration = 3;
  std::optional<Date> began = {};

  void press(Date now) { began = now; }
  void release() { began.reset(); }
  /// 0...1; 0 while nothing is pressed.
  double progress(Date now) const {
    return began && duration > 0 ? std::clamp(now.since(*began) / duration, 0.0, 1.0) : 0;
  }
  bool isComplete(Date now) const { return progress(now) >= 1; }
  bool operator==(const UnlockHold&) const = default;
};

} // namespace tavrin
