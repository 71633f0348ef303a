#include "TavrinPlatform/Linux/Tile/TileMarks.h"

#include "TavrinCore/Widgets/DockTileGeometry.h"

#include <QPainter>
#include <algorithm>

namespace tavrin {

namespace {

constexpr double ringRatio = 0.05;
constexpr double radiusRatio = 0.24;
/// White on black is no kind's tint, and stands out from every ground.
const QColor attentionColour(0xFF, 0xFF, 0xFF);
const QColor attentionEdgeColour(0, 0, 0);
const QColor accentColour(0x2E, 0x7D, 0xF6);
const QColor accentEdgeColour(255, 255, 255, 200);
/// 0 to 255.
constexpr int refusedOpacity = 110;

/// The picture without the margin round it.
QRectF bodyOf(const QRectF& picture) {
  const double margin = picture.height() * (1 - DockTileGeometry::iconBodyRatio) / 2;
  return picture.adjusted(margin, margin, -margin, -margin);
}

double strokeOf(const QRectF& picture) {
  return std::max(picture.height() * ringRatio, 2.0);
}

/// Its middle line lies `inset` points within the body's outline.
void paintRing(QPainter& painter, const QRectF& picture, const QColor& colour, double inset) {
  // Round the same centres as the body's corners.
  const double radius = picture.height() * DockTileGeometry::iconBodyRatio * radiusRatio - inset;
  painter.setPen(QPen(colour, strokeOf(picture)));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(bodyOf(picture).adjusted(inset, inset, -inset, -inset), radius, radius);
}

} // namespace

void paintAttentionRing(QPainter& painter, const QRectF& picture) {
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  const double stroke = strokeOf(picture);
  paintRing(painter, picture, attentionEdgeColour, stroke);
  paintRing(painter, picture, attentionColour, stroke / 2);
}

void paintAccentRing(QPainter& painter, const QRectF& picture) {
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  const double stroke = strokeOf(picture);
  paintRing(painter, picture, accentEdgeColour, stroke);
  paintRing(painter, picture, accentColour, stroke / 2);
}

void paintCopySign(QPainter& painter, const QRectF& picture) {
  const QRectF body = bodyOf(picture);
  const double mark = picture.height() * 0.26;
  const QPointF centre(body.right() - mark * 0.6, body.bottom() - mark * 0.6);
  painter.setPen(Qt::NoPen);
  painter.setBrush(accentColour);
  painter.drawEllipse(centre, mark / 2, mark / 2);
  painter.setPen(QPen(Qt::white, std::max(mark * 0.14, 1.5), Qt::SolidLine, Qt::RoundCap));
  const double arm = mark * 0.26;
  painter.drawLine(centre - QPointF(arm, 0), centre + QPointF(arm, 0));
  painter.drawLine(centre - QPointF(0, arm), centre + QPointF(0, arm));
}

void paintRefusal(QPainter& painter, const QRectF& picture) {
  // Paler, not darker: only what is there already is touched.
  painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0, 0, 0, refusedOpacity));
  painter.drawRect(picture);
}

} // namespace tavrin
