#include "TavrinStorage/Dock/PlistFileBackend.h"

#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinPlatform/Files/DocumentLock.h"

namespace tavrin {

namespace fs = std::filesystem;

std::optional<PropertyList::Dictionary> readPlistRoot(const fs::path& file) {
  std::optional<std::string> bytes;
  try {
    bytes = readFile(file, PropertyList::maximumSize);
  } catch (const FileError& error) {
    throw DockError::plistReadFailed(file, error.reason());
  }
  if (!bytes)
    return std::nullopt;
  try {
    PropertyList root = PropertyList::parse(*bytes);
    if (auto* entries = root.dictionary())
      return std::move(*entries);
  } catch (const PropertyListError& error) {
    throw DockError::plistMalformed(file, error.what());
  }
  throw DockError::plistMalformed(file, "root is not a dictionary");
}

void writePlistRoot(const fs::path& file, PropertyList::Dictionary root) {
  try {
    writeFileAtomically(file, PropertyList(std::move(root)).xml());
  } catch (const PropertyListError& error) {
    throw DockError::plistWriteFailed(file, error.what());
  } catch (const FileError& error) {
    throw DockError::plistWriteFailed(file, error.reason());
  }
}

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

std::shared_ptr<void> PlistFileBackend::exclusiveAccess() {
  return std::make_shared<DocumentLock>(url_);
}

DockPlistReader dockPlistReader(const fs::path& file) {
  return {std::make_shared<PlistFileBackend>(file)};
}

DockPlistWriter dockPlistWriter(const fs::path& file) {
  return {std::make_shared<PlistFileBackend>(file)};
}

} // namespace tavrin
