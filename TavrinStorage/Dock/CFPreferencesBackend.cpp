#include "TavrinStorage/Dock/CFPreferencesBackend.h"

namespace tavrin {

DockTiles CFPreferencesBackend::readTiles() {
  service_.synchronize(domain);
  const auto section = [&](std::string_view key) {
    const auto value = service_.copyAppValue(std::string(key), domain);
    return tileArray(value ? &*value : nullptr, key, url_);
  };
  return {section(DockTiles::appsKey), section(DockTiles::othersKey)};
}

void CFPreferencesBackend::writeTiles(const DockTiles& tiles) {
  service_.setAppValue(std::string(DockTiles::appsKey), tileArray(tiles.apps), domain);
  service_.setAppValue(std::string(DockTiles::othersKey), tileArray(tiles.others), domain);
  if (!service_.synchronize(domain))
    throw DockError::plistWriteFailed(url_, "cfprefsd refused to synchronize com.apple.dock");
}

} // namespace tavrin
