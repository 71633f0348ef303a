#pragma once

#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <QRectF>
#include <vector>

namespace tavrin {

/// How tiles of these spans, and places that are still free, lie in a width: in one row as large as
/// they may be, else smaller, else in several rows.
struct StripCells {
  static constexpr double largestSide = 64;
  static constexpr double smallestSide = 44;

  double side = largestSide;
  /// Each tile, then the free places that have room.
  std::vector<QRectF> rects;
  double height = largestSide;

  static StripCells of(const std::vector<int>& spans, int freePlaces, double width);

  /// The place among the first `count` tiles at which one let go at `point` comes to stand.
  std::size_t placeAt(QPointF point, std::size_t count) const;
  /// How many tiles wide a tile is whose right edge is drawn to `right`.
  int spanAt(const QRectF& tile, double right, int maxSpan) const;
};

} // namespace tavrin
