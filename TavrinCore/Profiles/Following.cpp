#include "TavrinCore/Profiles/Following.h"

#include <algorithm>

namespace tavrin {

double Following::boundedInterval() const {
  // Written so that what is no number is a bound too.
  return interval >= leastInterval ? std::min(interval, mostInterval) : leastInterval;
}

std::map<UUID, Hotkey> Following::bindings(const std::vector<Profile>& profiles) const {
  return WorkspaceHotkeys::bindings(
      profiles, numbered == HotkeyModifiers() ? std::nullopt : std::optional(numbered));
}

bool Following::isWanted(const ProfilesFile& file) const {
  return isOn.value_or(std::ranges::any_of(file.profiles, isLedTo));
}

} // namespace tavrin
