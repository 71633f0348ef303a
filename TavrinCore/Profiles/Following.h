#pragma once

#include "TavrinCore/Profiles/WorkspaceHotkeys.h"

namespace tavrin {

/// The document "following.json": how shortcuts and Focus are followed.
struct Following {
  static constexpr double leastInterval = 0.2;
  static constexpr double mostInterval = 3600;

  /// Without a value they are followed where a profile has a shortcut or a Focus.
  std::optional<bool> isOn;
  /// The modifiers of the numbered shortcuts; empty for no such shortcuts.
  HotkeyModifiers numbered = WorkspaceHotkeys::defaultModifiers;
  /// Seconds between two looks at the Focus state.
  double interval = 2;
  /// Members that this build does not know, written back as they were.
  JSONValue::Object unrecognized = {};

  static constexpr auto fields() {
    return std::tuple{optional("isOn", &Following::isOn).titled("Follow shortcuts and Focus"),
                      optional("numbered", &Following::numbered).titled("Numbered shortcuts"),
                      optional("interval", &Following::interval).titled("Interval")};
  }
  bool operator==(const Following&) const = default;

  /// `interval` within its bounds.
  double boundedInterval() const;
  /// Which shortcut leads to which profile.
  std::map<UUID, Hotkey> bindings(const std::vector<Profile>& profiles) const;
  /// Whether a program is to follow for these profiles.
  bool isWanted(const ProfilesFile& file) const;
};

/// Whether a shortcut or a Focus of its own leads to it.
inline bool isLedTo(const Profile& profile) {
  return profile.hotkey || !profile.focusModeBinding.value_or("").empty();
}

} // namespace tavrin
