#pragma once

#include "TavrinWidgetsUI/Files/FileWords.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

namespace tavrin {

inline constexpr QColor shelfTint{0xC9, 0x8B, 0x45};

/// What the tile shows of the shelf.
struct ShelfReading {
  std::size_t count = 0;
  std::size_t missing = 0;
  /// Newest first; no more than a tile can show.
  std::vector<FileSheet> sheets;
};

/// The most things that stand on a wide tile of any span.
inline constexpr std::size_t mostTileSheets = 10;

AnyView shelfTileIcon(const ShelfReading& reading, const TileSize& size);
AnyView shelfWideTile(const ShelfReading& reading, const TileSize& size);

} // namespace tavrin
