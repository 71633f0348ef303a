#pragma once

#include <QRect>
#include <vector>

class QImage;

namespace tavrin {

/// Runs of pixels that are rather seen than not, row by row, from `origin` on; equal rows that
/// follow each other are one.
std::vector<QRect> solidRuns(const QImage& image, QPoint origin);

} // namespace tavrin
