#include "TavrinStorage/Dock/PlistFileBackend.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinPlatform/Files/DocumentLock.h"
#include "TavrinPlatform/Files/PlistRoot.h"

namespace tavrin {

namespace fs = std::filesystem;

DockTiles PlistFileBackend::readTiles() {
  const auto root = readPlistRoot(url_);
  if (!root)
    throw DockError::plistNotFound(url_);
  const auto section = [&](std::string_view key) {
    const auto found = root->find(key);
    return tileArray(found == root->end() ? nullptr : &found->second, key, url_);
  };
  return {section(DockTiles::appsKey), section(DockTiles::othersKey)};
}

void PlistFileBackend::writeTiles(const DockTiles& tiles) {
  auto root = readPlistRoot(url_).value_or(PropertyList::Dictionary());
  root.insert_or_assign(std::string(DockTiles::appsKey), tileArray(tiles.apps));
  root.insert_or_assign(std::string(DockTiles::othersKey), tileArray(tiles.others));
  writePlistRoot(url_, std::move(root));
}

std::shared_ptr<void> exclusiveAccessTo(const fs::path& dockPlist) {
  auto lock = std::make_shared<DocumentLock>(dockPlist);
  if (lock->isTaken())
    throw DockError::plistWriteFailed(dockPlist, translated("another process is changing it"));
  return lock;
}

std::shared_ptr<void> PlistFileBackend::exclusiveAccess() {
  return exclusiveAccessTo(url_);
}

DockPlistReader dockPlistReader(const fs::path& file) {
  return {std::make_shared<PlistFileBackend>(file)};
}

DockPlistWriter dockPlistWriter(const fs::path& file) {
  return {std::make_shared<PlistFileBackend>(file)};
}

} // namespace tavrin
