#pragma once

#include "TavrinPlatform/DockGeometry.h"
#include "TavrinPlatform/DockTile.h"

#include <QPointF>
#include <QRectF>

namespace tavrin {

/// Where the tiles of a strip stand along an edge of a screen, in the toolkit's points (origin
/// at the top left, y downwards).
struct StripLayout {
  /// All cells and the insets at both ends.
  QRectF strip;
  /// The cells of the one tile.
  QRectF tile;
  /// As wished for, or what lets all cells stand in the row.
  double tileSize = 0;
  bool isVertical = false;
  bool isLeft = false;
  /// The way from the edge into the screen, of length 1.
  QPointF inwards() const;
  /// The part of the edge that the tile lies on, so deep.
  QRectF edge(double depth) const;

  /// Centred on the edge of `available` that `preferences.orientation` names.
  static StripLayout make(const QRectF& available, const DockPreferences& preferences,
                          const DockTile::Place& place);
};

} // namespace tavrin
