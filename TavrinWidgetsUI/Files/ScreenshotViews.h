#pragma once

#include "TavrinPlatform/FolderWatch.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <string>
#include <vector>

namespace tavrin {

inline constexpr QColor screenshotTint{0x2B, 0xA8, 0x9E};

/// What the tile shows of the roll.
struct ScreenshotReading {
  bool isKnown = false;
  FolderListing::State state = FolderListing::State::listed;
  struct Shot {
    /// Null while it is being made.
    QImage picture;
    std::string name;
    /// When it was taken, in words.
    QString moment;
    /// Is no picture after all.
    bool isBroken = false;
  };
  /// Newest first; no more than a tile can show.
  std::vector<Shot> shots;
};

/// The most pictures that a wide tile of any span shows.
inline constexpr std::size_t mostTileShots = 6;

AnyView screenshotTileIcon(const ScreenshotReading& reading, const TileSize& size);
/// The newest side by side; a click on one is `open` with its number.
AnyView screenshotWideTile(const ScreenshotReading& reading, const TileSize& size,
                           const std::function<void(std::size_t)>& open);

} // namespace tavrin
