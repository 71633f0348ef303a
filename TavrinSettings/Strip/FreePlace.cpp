#include "TavrinSettings/Strip/FreePlace.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QKeyEvent>
#include <QPainter>
#include <utility>

namespace tavrin {
namespace {

/// Shares of the tile's body.
constexpr double plusMargin = 0.32;

void paintPlace(QPainter& painter, const QRectF& rect, const QPen& pen, int fillOpacity) {
  const TileSize size{rect.height(), 1};
  painter.setPen(pen);
  painter.setBrush(QColor(255, 255, 255, fillOpacity));
  painter.drawRoundedRect(size.bodyRect().translated(rect.topLeft()), size.bodyRadius(),
                          size.bodyRadius());
}

} // namespace

FreePlace::FreePlace(QWidget* parent) : QAbstractButton(parent) {
  setAccessibleName(worded("Add a widget"));
  setPlainToolTip(this, worded("Add a widget"));
}

void FreePlace::setAwaiting(bool isAwaiting) {
  if (std::exchange(isAwaiting_, isAwaiting) != isAwaiting)
    update();
}

void FreePlace::paintEmpty(QPainter& painter, const QRectF& rect) {
  paintPlace(painter, rect, QPen(QColor(255, 255, 255, 130), 1.5, Qt::DashLine), 24);
}

void FreePlace::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool isBright = isAwaiting_ || isDown() || underMouse() || hasFocus();
  if (isBright)
    paintPlace(painter, rect(), QPen(Qt::white, isAwaiting_ || hasFocus() ? 2.5 : 1.5),
               isDown() ? 110 : 70);
  else
    paintEmpty(painter, rect());
  const QRectF body = TileSize{static_cast<double>(height()), 1}.bodyRect();
  const double plus = body.height() * plusMargin;
  drawSymbol(painter, "plus", body.marginsRemoved(QMarginsF(plus, plus, plus, plus)),
             QColor(255, 255, 255, isBright ? 255 : 235));
}

void FreePlace::keyPressEvent(QKeyEvent* event) {
  const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (isPlain && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
    click();
  else if (!isPlain || !onKey || !onKey(event->key()))
    QAbstractButton::keyPressEvent(event);
}

void FreePlace::enterEvent(QEnterEvent*) {
  update();
}

void FreePlace::leaveEvent(QEvent*) {
  update();
}

} // namespace tavrin
