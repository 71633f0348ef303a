#include "TavrinSettings/Strip/StripTile.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>

namespace tavrin {
namespace {

constexpr double edgeWidth = 10;

} // namespace

StripTile::StripTile(PageServices& services, const DockWidget& widget, QWidget* parent)
    : QAbstractButton(parent), services_(services), widget_(widget), shownSpan_(widget.span) {
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
}

void StripTile::setRecord(const DockWidget& widget, int place, int count) {
  const bool isOther = widget_ != widget;
  widget_ = widget;
  shownSpan_ = widget.span;
  const auto name = QString::fromStdString(widget.name);
  setAccessibleName(worded("{name}, place {place} of {count}",
                           {{"name", name}, {"place", place}, {"count", count}}));
  setAccessibleDescription(QStringLiteral("%1, %2").arg(
      utf8(widget.kind.title()),
      wordedPlural("{count} tile wide", "{count} tiles wide", widget.span)));
  if (isOther)
    update();
}

void StripTile::setChosen(bool isChosen) {
  if (std::exchange(isChosen_, isChosen) != isChosen)
    update();
}

void StripTile::setSide(double side) {
  side_ = side;
  update();
}

void StripTile::setShownSpan(int span) {
  if (std::exchange(shownSpan_, span) != span)
    update();
}

void StripTile::tick() {
  if (!followsTime(widget_.kind))
    return;
  const AnyView now = services_.stage.view(widget_, {side_, shownSpan_});
  if (now != painted_)
    update();
  painted_ = now;
}

QSize StripTile::sizeHint() const {
  return QSizeF(TileSize{side_, shownSpan_}.width(), side_).toSize();
}

void StripTile::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const TileSize size{side_, shownSpan_};
  auto shown = widget_;
  shown.span = shownSpan_;
  services_.stage.paint(painter, shown, size, {0, 0});
  const QRectF body = size.bodyRect();
  if (isChosen_ || hasFocus()) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(255, 255, 255, isChosen_ ? 255 : 170), 2.5));
    painter.drawRoundedRect(body.adjusted(-3, -3, 3, 3), size.bodyRadius() + 3,
                            size.bodyRadius() + 3);
  }
  if (widget_.kind.maxSpan() > 1 && (underMouse() || isResizing_)) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 220));
    const double height = body.height() * 0.4;
    painter.drawRoundedRect(QRectF(body.right() - 1, body.center().y() - height / 2, 4, height), 2,
                            2);
  }
}

bool StripTile::isAtEdge(QPointF point) const {
  return widget_.kind.maxSpan() > 1 && point.x() >= width() - edgeWidth;
}

void StripTile::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton)
    return;
  isResizing_ = isAtEdge(event->position());
  pressedAt_ = event->position().toPoint();
  setFocus(Qt::MouseFocusReason);
  if (!isResizing_)
    setDown(true);
}

void StripTile::mouseMoveEvent(QMouseEvent* event) {
  const QPoint global = event->globalPosition().toPoint();
  if (services_.drag.isActive()) {
    services_.drag.moveTo(global);
    return;
  }
  if (isResizing_) {
    if (onResize)
      onResize(mapToParent(event->position()).x(), false);
    return;
  }
  setCursor(isAtEdge(event->position()) ? Qt::SizeHorCursor : Qt::ArrowCursor);
  if (!pressedAt_ || (event->position().toPoint() - *pressedAt_).manhattanLength() <
                         QApplication::startDragDistance())
    return;
  setDown(false);
  services_.drag.begin({widget_.id, {}, widget_.span}, grab(), *pressedAt_, global);
}

void StripTile::mouseReleaseEvent(QMouseEvent* event) {
  const bool wasPressed = pressedAt_.has_value() && isDown();
  pressedAt_.reset();
  setDown(false);
  if (services_.drag.isActive())
    services_.drag.drop(event->globalPosition().toPoint());
  else if (std::exchange(isResizing_, false)) {
    if (onResize)
      onResize(mapToParent(event->position()).x(), true);
  } else if (wasPressed && rect().contains(event->position().toPoint()))
    click();
}

void StripTile::keyPressEvent(QKeyEvent* event) {
  if (!onKey || !onKey(event))
    QAbstractButton::keyPressEvent(event);
}

void StripTile::focusInEvent(QFocusEvent* event) {
  QAbstractButton::focusInEvent(event);
  // A window that comes to the front chooses nothing.
  if (onFocus && event->reason() != Qt::ActiveWindowFocusReason)
    onFocus();
}

void StripTile::enterEvent(QEnterEvent*) {
  update();
}

void StripTile::leaveEvent(QEvent*) {
  update();
}

} // namespace tavrin
