#pragma once

#include "TavrinCore/Base/Hotkey.h"
#include "TavrinCore/Text/Texts.h"

#include <optional>
#include <string>

namespace tavrin {

/// The X server's number of the key at a place of the ANSI keyboard; no value where it has none.
std::optional<std::uint8_t> x11KeyCode(std::uint16_t virtualKeyCode);

/// A shortcut as the desktop's portal writes it, "CTRL+ALT+1"; command is LOGO. No value for a key
/// that has no name.
std::optional<std::string> portalTrigger(const Hotkey& hotkey);

inline constexpr const char* noSuchKey = marked("this keyboard has no such key");

} // namespace tavrin
