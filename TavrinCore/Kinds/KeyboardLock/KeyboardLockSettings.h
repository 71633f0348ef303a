#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct KeyboardLockSettings {
  static constexpr std::string_view kindKey = "keyboardLock";

  bool locksPointer = true;
  /// How long a click is held to unlock.
  int holdSeconds = 3;
  /// Below 1 it never unlocks by itself.
  int autoUnlockMinutes = 2;
  bool playsSound = true;

  static constexpr auto fields() {
    return std::tuple{
        optional("locksPointer", &KeyboardLockSettings::locksPointer)
            .titled("Lock the pointer too")
            .helped("Clicks and scrolling do nothing either, but on the unlock button."),
        optional("holdSeconds", &KeyboardLockSettings::holdSeconds)
            .titled("Hold to unlock")
            .helped("How long the unlock button is held.")
            .in("s")
            .ranging(1, 10),
        optional("autoUnlockMinutes", &KeyboardLockSettings::autoUnlockMinutes)
            .titled("Unlock after")
            .helped("When it unlocks by itself; 0 for never.")
            .in("min")
            .ranging(0, 30),
        optional("playsSound", &KeyboardLockSettings::playsSound)
            .titled("Play a sound")
            .helped("When it locks and when it unlocks.")};
  }
  bool operator==(const KeyboardLockSettings&) const = default;
};

} // namespace tavrin
