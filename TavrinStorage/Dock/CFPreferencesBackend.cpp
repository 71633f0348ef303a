#include "TavrinStorage/Dock/CFPreferencesBackend.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinStorage/Dock/PlistFileBackend.h"

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
    throw DockError::plistWriteFailed(url_, service_.refusal().value_or(translated(
                                                "cfprefsd refused to synchronize com.apple.dock")));
}

std::shared_ptr<void> CFPreferencesBackend::exclusiveAccess() {
  std::error_code ignored; // The write says what is wrong.
  std::filesystem::create_directories(url_.parent_path(), ignored);
  return exclusiveAccessTo(url_);
}

} // namespace tavrin
