#include "TavrinCore/Dock/DockPlistReader.h"

#include "TavrinCore/Dock/DockTileMapping.h"

namespace tavrin {

namespace {

std::string_view labelOf(const PropertyList::Dictionary& tile) {
  const auto data = tile.find("tile-data");
  for (const auto* key : {"file-label", "label"})
    if (const auto* label = data == tile.end() ? nullptr : data->second.entry(key))
      if (const auto* text = label->string())
        return *text;
  return {};
}

std::vector<DockItem> items(const std::vector<PropertyList::Dictionary>& tiles, DockSection section,
                            std::string_view key, const std::filesystem::path& file) {
  std::vector<DockItem> items;
  for (const auto& tile : tiles) {
    try {
      items.push_back(decodeItem(tile, section, file));
    } catch (const DockError& error) {
      throw error.ofTile(key, items.size() + 1, labelOf(tile));
    }
  }
  return items;
}

} // namespace

DockSnapshot DockPlistReader::read(Date now) const {
  const DockTiles tiles = backend->readTiles();
  return {items(tiles.apps, DockSection::apps, DockTiles::appsKey, backend->url()),
          items(tiles.others, DockSection::others, DockTiles::othersKey, backend->url()), now};
}

void DockPlistWriter::write(const DockSnapshot& snapshot) const {
  DockTiles tiles;
  for (const auto& item : snapshot.apps)
    tiles.apps.push_back(encodeItem(item));
  for (const auto& item : snapshot.others)
    tiles.others.push_back(encodeItem(item));
  backend->writeTiles(tiles);
}

} // namespace tavrin
