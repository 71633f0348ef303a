#include "TavrinSettings/Strip/StripCells.h"

#include "TavrinCore/Widgets/DockTileGeometry.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tavrin {

StripCells StripCells::of(const std::vector<int>& spans, int freePlaces, double width) {
  const int cells = std::accumulate(spans.begin(), spans.end(), 0) + freePlaces;
  StripCells made;
  // A row of n cells is n pitches less a gap, and a pitch is a fixed part of the side.
  const double widest =
      DockTileGeometry::pitch(1) * std::max(cells, 1) - (DockTileGeometry::pitch(1) - 1);
  made.side = std::clamp(std::floor(width / widest), smallestSide, largestSide);
  const double gap = DockTileGeometry::pitch(made.side) - made.side;
  double x = 0;
  double y = 0;
  const auto add = [&](int span) {
    const double own = TileSize{made.side, span}.width();
    if (x > 0 && x + own > width + 0.5) {
      x = 0;
      y += made.side + 2 * gap;
    }
    made.rects.emplace_back(x, y, own, made.side);
    x += own + gap;
  };
  for (const int span : spans)
    add(span);
  // Free places take no row of their own where one of them has room.
  for (int i = 0; i < freePlaces; ++i) {
    if (i > 0 && x + made.side > width + 0.5)
      break;
    add(1);
  }
  made.height = y + made.side;
  // A single row stands in the middle, and is as high however large its tiles are.
  if (y == 0) {
    made.height = largestSide;
    for (auto& rect : made.rects)
      rect.translate((width - (x - gap)) / 2, (made.height - made.side) / 2);
  }
  return made;
}

std::size_t StripCells::placeAt(QPointF point, std::size_t count) const {
  if (rects.empty())
    return 0;
  // Above the first row and below the last one it is theirs.
  point.setY(std::clamp(point.y(), rects.front().top(), rects.back().bottom()));
  std::size_t place = 0;
  for (std::size_t i = 0; i < std::min(count, rects.size()); ++i) {
    const auto& rect = rects[i];
    const bool isBefore =
        rect.bottom() < point.y() || (rect.top() <= point.y() && rect.center().x() < point.x());
    if (isBefore)
      place = i + 1;
  }
  return place;
}

int StripCells::spanAt(const QRectF& tile, double right, int maxSpan) const {
  const double pitch = DockTileGeometry::pitch(side);
  const double cells = (right - tile.left() + (pitch - side)) / pitch;
  return std::clamp(static_cast<int>(std::lround(cells)), 1, maxSpan);
}

} // namespace tavrin
