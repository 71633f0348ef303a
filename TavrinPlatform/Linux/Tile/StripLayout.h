#pragma once

#include "TavrinPlatform/DockGeometry.h"
#include "TavrinPlatform/DockTile.h"

#include <QRectF>

namespace tavrin {

/// Where the tiles of a strip stand along an edge of a screen, in the toolkit's points (origin
/// at the top left, y downwards).
struct StripLayout {
  /// Distance between the centres of neighbouring tiles, in tile sizes.
  static constexpr double pitchRatio = 1.0625;
  /// From the strip's end to its first cell, in tile sizes.
  static constexpr double insetRatio = 0.125;

  /// All cells and the insets at both ends.
  QRectF strip;
  /// The cells of the one tile.
  QRectF tile;
  /// As wished for, or what lets all cells stand in the row.
  double tileSize = 0;
  bool isVertical = false;

  /// Centred on the edge of `available` that `preferences.orientation` names.
  static StripLayout make(const QRectF& available, const DockPreferences& preferences,
                          const DockTile::Place& place);
};

} // namespace tavrin
