#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct KeyboardLockSettings {
  bool locksPointer = true;
  /// How long a click is held to unlock.
  int holdSeconds = 3;
  /// Below 1 it never unlocks by itself.
  int autoUnlockMinutes = 2;
  bool playsSound = true;

  static constexpr auto fields() {
    return std::tuple{
        optional("locksPointer", &KeyboardLockSettings::locksPointer)
            .titled("Lock the pointer too"),
        optional("holdSeconds", &KeyboardLockSettings::holdSeconds)
            .titled("Hold to unlock")
            .in("s")
            .ranging(1, 10),
        optional("autoUnlockMinutes", &KeyboardLockSettings::autoUnlockMinutes)
            .titled("Unlock after")
            .in("min")
            .ranging(0, 30),
        optional("playsSound", &KeyboardLockSettings::playsSound).titled("Play a sound")};
  }
  bool operator==(const KeyboardLockSettings&) const = default;
};

} // namespace tavrin
