#pragma once

#include "TavrinCore/Base/Hotkey.h"

#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// Reads "ctrl+alt+1", "command+shift+F5" and the like, case aside; "super" and "cmd" are command,
/// "alt" is option. Throws SettingError for an unknown key or modifier, and for
/// modifiers that are too few for a shortcut that works everywhere.
Hotkey hotkeyFromText(std::string_view text);
/// The modifiers alone, "ctrl+alt", of shortcuts that work everywhere. Throws as `hotkeyFromText`.
HotkeyModifiers modifiersFromText(std::string_view text);

/// As this desktop's users read it: `hotkeySymbols` on a Mac, `hotkeyWords` elsewhere.
std::string hotkeyText(const Hotkey& hotkey);
/// "⌃⌥1"; the same in every language and on every desktop. A key without a name here is shown by
/// its number.
std::string hotkeySymbols(const Hotkey& hotkey);
/// "Ctrl+Alt+1", in the user's language; the command key is the one that other keyboards call
/// Super.
std::string hotkeyWords(const Hotkey& hotkey);

} // namespace tavrin
