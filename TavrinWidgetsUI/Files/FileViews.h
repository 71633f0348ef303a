#pragma once

#include "TavrinWidgetsUI/Files/FileWords.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

namespace tavrin {

inline constexpr QColor filesTint{0x3E, 0x8E, 0xF0};

/// What the tile shows of the roll.
struct FilesReading {
  bool isKnown = false;
  /// No folder can be listed.
  bool hasTrouble = false;
  std::size_t unseen = 0;
  std::size_t unfinished = 0;
  struct File {
    FileSheet sheet;
    QString title;
    /// Time and size.
    QString moment;
    QString bytes;
  };
  /// Newest first; no more than a tile can show.
  std::vector<File> files;
  /// There are more than `unseen`, which are not listed.
  bool hasMoreUnseen = false;
};

/// The most files whose sheets lie on a tile.
inline constexpr std::size_t mostTileFiles = 3;

/// How many are new: "7", or "20+" where there are more than are counted.
QString unseenText(std::size_t count, bool hasMore);

AnyView filesTileIcon(const FilesReading& reading, const TileSize& size);
/// The newest file by name; its button is `open`.
AnyView filesWideTile(const FilesReading& reading, const TileSize& size,
                      const std::function<void()>& open);

} // namespace tavrin
