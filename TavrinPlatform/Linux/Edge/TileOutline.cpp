#include "TavrinPlatform/Linux/Edge/TileOutline.h"

#include <QImage>

namespace tavrin {

namespace {

/// Of 255: from here on a pixel is rather seen than not.
constexpr int solid = 128;

} // namespace

std::vector<QRect> solidRuns(const QImage& image, QPoint origin) {
  std::vector<QRect> runs;
  for (int y = 0; y < image.height(); ++y) {
    const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = 0; x < image.width();) {
      const int start = x;
      const bool isSolid = qAlpha(row[x]) >= solid;
      while (x < image.width() && (qAlpha(row[x]) >= solid) == isSolid)
        ++x;
      if (!isSolid)
        continue;
      const QRect run(origin.x() + start, origin.y() + y, x - start, 1);
      if (!runs.empty() && runs.back().left() == run.left() && runs.back().width() == run.width() &&
          runs.back().bottom() + 1 == run.top())
        runs.back().setBottom(run.bottom());
      else
        runs.push_back(run);
    }
  }
  return runs;
}

} // namespace tavrin
