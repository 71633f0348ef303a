#include "TavrinCore/Profiles/WorkspaceHotkeys.h"

#include <algorithm>

namespace tavrin {
namespace {

/// The virtual key codes of 1 to 9 on the ANSI keyboard.
constexpr std::array<std::uint16_t, 9> digitKeyCodes = {18, 19, 20, 21, 23, 22, 26, 28, 25};

} // namespace

std::optional<Hotkey> WorkspaceHotkeys::numbered(std::size_t index, HotkeyModifiers modifiers) {
  if (index >= digitKeyCodes.size())
    return std::nullopt;
  return Hotkey{digitKeyCodes[index], modifiers};
}

std::map<UUID, Hotkey> WorkspaceHotkeys::bindings(const std::vector<Profile>& profiles,
                                                  std::optional<HotkeyModifiers> modifiers) {
  std::map<UUID, Hotkey> bindings;
  std::vector<Hotkey> used;
  for (const auto& profile : profiles) {
    if (!profile.hotkey)
      continue;
    bindings.emplace(profile.id, *profile.hotkey);
    used.push_back(*profile.hotkey);
  }
  for (std::size_t i = 0; modifiers && i < profiles.size(); ++i) {
    const auto hotkey = profiles[i].hotkey ? std::nullopt : numbered(i, *modifiers);
    if (!hotkey || std::find(used.begin(), used.end(), *hotkey) != used.end())
      continue;
    bindings.emplace(profiles[i].id, *hotkey);
    used.push_back(*hotkey);
  }
  return bindings;
}

} // namespace tavrin
