#pragma once

#include <algorithm>
#include <cmath>

namespace tavrin {

/// How the Dock lays its tiles out. All lengths in points.
struct DockTileGeometry {
  /// The share of a tile's side that the icon's body covers.
  static constexpr double iconBodyRatio = 0.805;

  /// From one tile's centre to the next.
  static constexpr double pitch(double tileSize) { return tileSize + tileSize * 0.0625; }
  /// From the Dock's start edge to the first tile's cell.
  static constexpr double inset(double tileSize) { return tileSize * 0.125; }
  /// The centre of the cell under `pointer`, along the Dock; before the first cell, that of the
  /// first.
  static double iconCenter(double pointer, double dockStart, double tileSize) {
    const double start = dockStart + inset(tileSize);
    const double cell = std::max(std::floor((pointer - start) / pitch(tileSize)), 0.0);
    return start + pitch(tileSize) * (cell + 0.5);
  }
};

} // namespace tavrin
