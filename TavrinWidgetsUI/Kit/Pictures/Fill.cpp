#include "TavrinWidgetsUI/Kit/Pictures/Fill.h"

#include <QImage>
#include <QPainter>
#include <QPainterPathStroker>
#include <algorithm>

namespace tavrin {

namespace {

/// Up to ten spans in a row, and three: edge, inside, edge.
constexpr int edgeBandRows = 2;
constexpr int bandRows = 8;
constexpr int convexBandRows = 12;
/// Width and height together; a path this small makes few spans in any case.
constexpr int smallPath = 96;

/// The image that `painter` paints whole pixels of, if it is that simple.
QImage* plainTarget(QPainter& painter) {
  if (painter.device()->devType() != QInternal::Image || painter.hasClipping() ||
      painter.compositionMode() != QPainter::CompositionMode_SourceOver)
    return nullptr;
  auto* image = static_cast<QImage*>(painter.device());
  return image->devicePixelRatio() == 1 && image->isDetached() ? image : nullptr;
}

void fillInBands(QPainter& painter, const QPainterPath& path, const QBrush& brush, int rows) {
  const QTransform world = painter.worldTransform();
  const QRect bounds = world.mapRect(path.controlPointRect()).toAlignedRect();
  const bool isSmall = bounds.height() <= rows || bounds.width() + bounds.height() <= smallPath;
  QImage* image = isSmall ? nullptr : plainTarget(painter);
  if (!image) {
    painter.fillPath(path, brush);
    return;
  }
  // A band is an image of its own over the same pixels: spans beyond it are never made, while a
  // clip would only drop them later.
  const int bottom = std::min(bounds.bottom() + 1, image->height());
  // Nearly level edges at the top and the bottom break up into a span for each shade of grey.
  const int edge = bounds.height() / 8;
  const auto height = [&](int y) {
    const bool isAtEdge = y < bounds.top() + edge || y + rows > bounds.bottom() - edge;
    return std::min(isAtEdge ? edgeBandRows : rows, bottom - y);
  };
  for (int y = std::max(bounds.top(), 0), count = 0; y < bottom; y += count) {
    count = height(y);
    QImage band(image->scanLine(y), image->width(), count, image->bytesPerLine(), image->format());
    QPainter bandPainter(&band);
    bandPainter.setRenderHints(painter.renderHints());
    bandPainter.setOpacity(painter.opacity());
    bandPainter.setWorldTransform(world * QTransform::fromTranslate(0, -y));
    bandPainter.fillPath(path, brush);
  }
}

/// `pixel` with all four channels times `share` / 255, rounded.
QRgb scaled(QRgb pixel, unsigned share) {
  const auto half = [share](QRgb channels) {
    const QRgb product = channels * share;
    return ((product + ((product >> 8) & 0xFF00FF) + 0x800080) >> 8) & 0xFF00FF;
  };
  return half(pixel & 0xFF00FF) | (half((pixel >> 8) & 0xFF00FF) << 8);
}

void layRow(QRgb* under, const QRgb* row, int width) {
  QRgb any = 0;
  for (int x = 0; x < width; ++x)
    any |= under[x];
  if (!any) {
    std::copy_n(row, width, under);
    return;
  }
  for (int x = 0; x < width; ++x)
    if (row[x])
      under[x] = row[x] + scaled(under[x], 255U - static_cast<unsigned>(qAlpha(row[x])));
}

} // namespace

void fillPath(QPainter& painter, const QPainterPath& path, const QBrush& brush) {
  fillInBands(painter, path, brush, bandRows);
}

void fillConvexPath(QPainter& painter, const QPainterPath& path, const QBrush& brush) {
  fillInBands(painter, path, brush, convexBandRows);
}

void strokePath(QPainter& painter, const QPainterPath& path, const QPen& pen) {
  QPainterPathStroker stroker(pen);
  stroker.setCurveThreshold(0.1);
  QPainterPath outline = stroker.createStroke(path);
  outline.setFillRule(Qt::WindingFill);
  fillInBands(painter, outline, pen.brush(), bandRows);
}

void drawPixels(QPainter& painter, QPoint corner, const QImage& image) {
  QImage* target = painter.opacity() < 1 ? nullptr : plainTarget(painter);
  if (!target || target->format() != QImage::Format_ARGB32_Premultiplied) {
    const QTransform world = painter.worldTransform();
    const double ratio = painter.device()->devicePixelRatio();
    QImage scaled = image;
    scaled.setDevicePixelRatio(ratio);
    painter.resetTransform();
    painter.drawImage(QPointF(corner) / ratio, scaled);
    painter.setWorldTransform(world);
    return;
  }
  const QRect shown = image.rect().translated(corner) & target->rect();
  for (int y = shown.top(); y <= shown.bottom(); ++y)
    layRow(reinterpret_cast<QRgb*>(target->scanLine(y)) + shown.left(),
           reinterpret_cast<const QRgb*>(image.constScanLine(y - corner.y())) + shown.left() -
               corner.x(),
           shown.width());
}

} // namespace tavrin
