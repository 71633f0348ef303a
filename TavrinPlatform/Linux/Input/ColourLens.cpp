#include "TavrinPlatform/Linux/Input/ColourLens.h"

#include <QPainter>

namespace tavrin {

namespace {

/// Points a pixel.
constexpr int zoom = 10;
constexpr int lensSide = (2 * ColourLens::reach + 1) * zoom;
constexpr int labelHeight = 26;
constexpr int distance = 28;
static_assert(ColourLens::size == QSize(lensSide, lensSide + labelHeight));

} // namespace

void ColourLens::paint(QPainter& painter, const QImage& pixels) {
  const QRect whole(QPoint(), size);
  painter.fillRect(whole, QColor(0x12, 0x12, 0x14));
  painter.drawImage(QRect(0, 0, lensSide, lensSide), pixels);
  painter.setPen(QColor(0, 0, 0, 36));
  for (int i = 1; i < 2 * reach + 1; ++i) {
    painter.drawLine(i * zoom, 0, i * zoom, lensSide);
    painter.drawLine(0, i * zoom, lensSide, i * zoom);
  }
  const QRect middle(reach * zoom, reach * zoom, zoom, zoom);
  painter.setPen(Qt::black);
  painter.drawRect(middle.adjusted(-1, -1, 0, 0));
  painter.setPen(Qt::white);
  painter.drawRect(middle.adjusted(-2, -2, 1, 1));
  const QColor colour = pixels.pixelColor(reach, reach);
  const QRect label(0, lensSide, lensSide, labelHeight);
  painter.fillRect(QRect(8, lensSide + 6, 14, 14), colour);
  painter.setPen(QColor(255, 255, 255, 60));
  painter.drawRect(QRect(8, lensSide + 6, 13, 13));
  painter.setPen(QColor(255, 255, 255, 235));
  painter.drawText(label.adjusted(30, 0, -6, 0), Qt::AlignVCenter | Qt::AlignLeft,
                   colour.name().toUpper());
  // An edge on light grounds and on dark ones.
  painter.setPen(QColor(0, 0, 0, 180));
  painter.drawRect(whole.adjusted(0, 0, -1, -1));
  painter.setPen(QColor(255, 255, 255, 70));
  painter.drawRect(whole.adjusted(1, 1, -2, -2));
}

QImage ColourLens::around(const QImage& whole, QPoint pixel) {
  constexpr int side = 2 * reach + 1;
  QImage square(side, side, QImage::Format_RGB32);
  square.fill(Qt::black);
  QPainter(&square).drawImage(QPoint(reach, reach) - pixel, whole);
  return square;
}

QPoint ColourLens::beside(QPoint place, const QRect& room) {
  const auto along = [](int at, int length, int end) {
    return at + distance + length <= end ? at + distance : at - distance - length;
  };
  return {along(place.x(), size.width(), room.right()),
          along(place.y(), size.height(), room.bottom())};
}

} // namespace tavrin
