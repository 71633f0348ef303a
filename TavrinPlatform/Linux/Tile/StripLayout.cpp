#include "TavrinPlatform/Linux/Tile/StripLayout.h"

#include "TavrinCore/Widgets/DockTileGeometry.h"

#include <algorithm>
#include <cmath>

namespace tavrin {

QPointF StripLayout::inwards() const {
  if (!isVertical)
    return {0, -1};
  return {isLeft ? 1.0 : -1.0, 0};
}

QRectF StripLayout::edge(double depth) const {
  QRectF part = tile;
  if (!isVertical)
    part.setTop(part.bottom() - depth);
  else if (isLeft)
    part.setWidth(depth);
  else
    part.setLeft(part.right() - depth);
  return part;
}

StripLayout StripLayout::make(const QRectF& available, const DockPreferences& preferences,
                              const DockTile::Place& place) {
  StripLayout layout;
  layout.isLeft = preferences.orientation == "left";
  const bool isRight = preferences.orientation == "right";
  layout.isVertical = layout.isLeft || isRight;

  const int span = std::max(place.span, 1);
  const int before = std::max(place.cellsBefore, 0);
  const int cells = std::max(place.cellsInAll, before + span);
  const double length = layout.isVertical ? available.height() : available.width();
  layout.tileSize = std::min(
      preferences.tileSize,
      std::floor(length / (cells * DockTileGeometry::pitch(1) + 2 * DockTileGeometry::inset(1))));
  layout.tileSize = std::max(layout.tileSize, 1.0);

  const double pitch = DockTileGeometry::pitch(layout.tileSize);
  const double inset = DockTileGeometry::inset(layout.tileSize);
  const double whole = cells * pitch + 2 * inset;
  const double size = layout.tileSize;
  const double along = std::round((length - whole) / 2);
  const double cell = along + inset + before * pitch;
  if (layout.isVertical) {
    const double x = layout.isLeft ? available.left() : available.right() - size;
    layout.strip = {x, available.top() + along, size, whole};
    layout.tile = {x, available.top() + cell, size, span * pitch};
  } else {
    const double y = available.bottom() - size;
    layout.strip = {available.left() + along, y, whole, size};
    layout.tile = {available.left() + cell, y, span * pitch, size};
  }
  return layout;
}

} // namespace tavrin
