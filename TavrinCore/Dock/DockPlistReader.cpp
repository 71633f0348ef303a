#include "TavrinCore/Dock/DockPlistReader.h"

#include "TavrinCore/Dock/DockTileMapping.h"

namespace tavrin {

DockSnapshot DockPlistReader::read(Date now) const {
  const DockTiles tiles = backend->readTiles();
  DockSnapshot snapshot{.apps = {}, .others = {}, .capturedAt = now};
  for (const auto& tile : tiles.apps)
    snapshot.apps.push_back(decodeItem(tile, DockSection::apps, backend->url()));
  for (const auto& tile : tiles.others)
    snapshot.others.push_back(decodeItem(tile, DockSection::others, backend->url()));
  return snapshot;
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
