#include "TavrinSettings/Base/InstalledApps.h"

#include <algorithm>
#include <cmath>

namespace tavrin {

struct InstalledApps::Observer final : Token {
  Observer(std::vector<Observer*>& in, std::function<void()> handler)
      : all(in), changed(std::move(handler)) {
    all.push_back(this);
  }
  ~Observer() override { std::erase(all, this); }

  std::vector<Observer*>& all;
  std::function<void()> changed;
};

InstalledApps::InstalledApps(ApplicationLibrary& library) : library_(library), icons_(library) {
  icons_.onLoad = [this] { tell(); };
  changes_ = library_.observe([this] {
    found_.clear();
    icons_.refresh();
    tell();
  });
}

TokenPtr InstalledApps::observe(std::function<void()> changed) {
  return std::make_unique<Observer>(observers_, std::move(changed));
}

void InstalledApps::tell() {
  // One that is told may end another.
  for (auto* observer : std::vector(observers_))
    if (std::ranges::count(observers_, observer) > 0)
      observer->changed();
}

InstalledApp InstalledApps::app(const AppEntry& entry, int points, double scale) {
  const std::pair key(entry.path, entry.bundleIdentifier.value_or(std::string()));
  const auto [place, isNew] = found_.try_emplace(key);
  auto& found = place->second;
  if (isNew)
    found.asking = library_.find(
        {entry}, [this, key](const std::vector<std::optional<ApplicationInfo>>& infos) {
          auto& known = found_[key];
          const bool isHere = !infos.empty() && infos.front().has_value();
          known.icon.emplace(isHere ? std::optional(infos.front()->icon) : std::nullopt);
          tell();
        });
  if (!found.icon)
    return {};
  if (!*found.icon)
    return {{}, true};
  return {icons_.image(**found.icon, points, static_cast<int>(std::ceil(scale))), false};
}

} // namespace tavrin
