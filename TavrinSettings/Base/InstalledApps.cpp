#include "TavrinSettings/Base/InstalledApps.h"

#include <cmath>

namespace tavrin {

InstalledApps::InstalledApps(ApplicationLibrary& library) : library_(library), icons_(library) {
  icons_.onLoad = [this] {
    if (onLoad)
      onLoad();
  };
  changes_ = library_.observe([this] {
    found_.clear();
    icons_.refresh();
    if (onLoad)
      onLoad();
  });
}

InstalledApps::App InstalledApps::app(const AppEntry& entry, int points, double scale) {
  const std::pair key(entry.path, entry.bundleIdentifier.value_or(std::string()));
  const auto [place, isNew] = found_.try_emplace(key);
  auto& found = place->second;
  if (isNew)
    found.asking = library_.find(
        {entry}, [this, key](const std::vector<std::optional<ApplicationInfo>>& infos) {
          auto& known = found_[key];
          const bool isHere = !infos.empty() && infos.front().has_value();
          known.icon.emplace(isHere ? std::optional(infos.front()->icon) : std::nullopt);
          if (onLoad)
            onLoad();
        });
  if (!found.icon)
    return {};
  if (!*found.icon)
    return {{}, true};
  return {icons_.image(**found.icon, points, static_cast<int>(std::ceil(scale))), false};
}

} // namespace tavrin
