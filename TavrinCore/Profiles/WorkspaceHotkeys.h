#pragma once

#include "TavrinCore/Profiles/Profile.h"

#include <map>

namespace tavrin {

/// Which shortcut switches to which profile.
struct WorkspaceHotkeys {
  static constexpr HotkeyModifiers defaultModifiers =
      HotkeyModifiers::option | HotkeyModifiers::control;
  /// What may be chosen for numbered shortcuts, in the order it is offered.
  static constexpr std::array<HotkeyModifiers, 5> modifierChoices = {
      HotkeyModifiers::option | HotkeyModifiers::control,
      HotkeyModifiers::command | HotkeyModifiers::control,
      HotkeyModifiers::command | HotkeyModifiers::option,
      HotkeyModifiers::command | HotkeyModifiers::option | HotkeyModifiers::control,
      HotkeyModifiers::option | HotkeyModifiers::control | HotkeyModifiers::shift};

  /// The digit `index` + 1 with the modifiers; no value beyond the ninth.
  static std::optional<Hotkey> numbered(std::size_t index, HotkeyModifiers modifiers);

  /// A profile's own shortcut always counts. With `modifiers`, the profiles without one get the
  /// digit of their place in the list, unless that shortcut is taken.
  static std::map<UUID, Hotkey> bindings(const std::vector<Profile>& profiles,
                                         std::optional<HotkeyModifiers> modifiers);
};

} // namespace tavrin
