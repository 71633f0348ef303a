#include "TavrinSettings/Base/TileStage.h"

#include <QLinearGradient>
#include <QPaintDevice>
#include <QPainter>

namespace tavrin {

void TileStage::paint(QPainter& painter, const DockWidget& widget, const TileSize& size,
                      QPointF place) {
  paint(painter, view(widget, size), size, place);
}

void TileStage::paint(QPainter& painter, const AnyView& view, const TileSize& size, QPointF place) {
  painter_.paint(painter, view, QRectF(place, QSizeF(size.width(), size.height())),
                 painter.device()->devicePixelRatioF());
}

void TileStage::paintBody(QPainter& painter, const TileSize& size) {
  paint(painter, tile(palette::ground, {}, size), size, {});
}

void TileStage::paintWaiting(QPainter& painter, const DockWidget& widget, const TileSize& size) {
  paint(painter, symbolTile(widget.kind, size, TileState::waiting), size, {});
}

void paintDesktopGround(QPainter& painter, const QRectF& rect, bool isDark) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  QLinearGradient ground(rect.topLeft(), rect.bottomRight());
  ground.setColorAt(0, isDark ? QColor(0x33, 0x41, 0x5C) : QColor(0x8F, 0xAD, 0xD4));
  ground.setColorAt(1, isDark ? QColor(0x4A, 0x3C, 0x58) : QColor(0xC3, 0xAE, 0xCB));
  painter.setPen(Qt::NoPen);
  painter.setBrush(ground);
  painter.drawRoundedRect(rect, 12, 12);
  painter.restore();
}

} // namespace tavrin
