#pragma once

#include <QBrush>
#include <QPainterPath>
#include <QPen>

class QImage;
class QPainter;

namespace tavrin {

/// The raster engine hands a fill of about a hundred spans to the thread pool, which costs a tile
/// more in wake-ups, threads and waiting than the fill itself. These fill in bands of rows that
/// are few enough to stay on this thread. Free drawings should use them for all but small forms.
void fillPath(QPainter& painter, const QPainterPath& path, const QBrush& brush);
/// For forms that a row crosses once: fewer bands.
void fillConvexPath(QPainter& painter, const QPainterPath& path, const QBrush& brush);
void strokePath(QPainter& painter, const QPainterPath& path, const QPen& pen);
/// Lays a premultiplied `image` over the painter's pixels, its top left at the device pixel
/// `corner`; no transform applies.
void drawPixels(QPainter& painter, QPoint corner, const QImage& image);

} // namespace tavrin
