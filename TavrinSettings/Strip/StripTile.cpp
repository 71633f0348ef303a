#include "TavrinSettings/Strip/StripTile.h"

#include "TavrinCore/Kinds/Files/ShelfSettings.h"
#include "TavrinSettings/Base/DroppedFiles.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QApplication>
#include <QDropEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

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
  // Others that take files do something with them at once, which is for the desktop's tile.
  setAcceptDrops(widget.kind.get<ShelfSettings>() != nullptr);
  const auto name = QString::fromStdString(widget.name);
  setAccessibleName(worded("{name}, place {place} of {count}",
                           {{"name", name}, {"place", place}, {"count", count}}));
  say();
  if (isOther)
    update();
}

void StripTile::say() {
  const bool isStill = services_.live.state(widget_.id) == LiveTiles::State::still;
  const auto note = worded("A preview: the widget is not running.");
  const auto words = QStringLiteral("%1, %2").arg(
      utf8(widget_.kind.title()),
      wordedPlural("{count} tile wide", "{count} tiles wide", widget_.span));
  const auto name = QString::fromStdString(widget_.name);
  setPlainToolTip(this, isStill ? QStringLiteral("%1\n%2").arg(name, note) : name);
  setAccessibleDescription(isStill ? QStringLiteral("%1. %2").arg(words, note) : words);
}

void StripTile::refreshPicture() {
  say();
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

QSize StripTile::sizeHint() const {
  return QSizeF(TileSize{side_, shownSpan_}.width(), side_).toSize();
}

void StripTile::paintTile(QPainter& painter) {
  const TileSize size{side_, shownSpan_};
  switch (services_.live.state(widget_.id)) {
  case LiveTiles::State::live:
    return paintLive(painter, *services_.live.picture(widget_.id), size);
  case LiveTiles::State::awaited:
    return services_.stage.paintWaiting(painter, widget_, size);
  case LiveTiles::State::still:
    break;
  }
  auto shown = widget_;
  shown.span = shownSpan_;
  painter.setOpacity(0.6);
  services_.stage.paint(painter, shown, size, {0, 0});
  painter.setOpacity(1);
  paintPreviewMark(painter, size.bodyRect());
}

/// A tile that is being made wider or narrower has a body of the new width until its slot has drawn
/// that.
void StripTile::paintLive(QPainter& painter, const QImage& picture, const TileSize& size) {
  const double width = side_ * picture.width() / picture.height();
  const QRectF place(0, 0, width, side_);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  if (std::abs(width - size.width()) <= 1)
    return painter.drawImage(place, picture);
  services_.stage.paintBody(painter, size);
  QPainterPath body;
  body.addRoundedRect(size.bodyRect(), size.bodyRadius(), size.bodyRadius());
  painter.save();
  painter.setClipPath(body);
  painter.drawImage(place, picture);
  painter.restore();
}

void StripTile::paintPreviewMark(QPainter& painter, const QRectF& body) const {
  QFont font = panelFont(PanelTextStyle::caption);
  font.setPixelSize(std::max(8, static_cast<int>(body.height() * 0.22)));
  font.setWeight(QFont::Medium);
  const auto words = worded("Preview");
  const QFontMetricsF metrics(font);
  const double room = body.width() + 6;
  const QSizeF mark(std::min(metrics.horizontalAdvance(words) + 8, room), metrics.height());
  const QRectF place(
      QPointF(body.center().x() - mark.width() / 2, body.bottom() - mark.height() - 3), mark);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0x12, 0x12, 0x14, 0xE6));
  painter.drawRoundedRect(place, mark.height() / 2, mark.height() / 2);
  painter.setPen(QColor(255, 255, 255, 235));
  painter.setFont(font);
  painter.drawText(place, Qt::AlignCenter,
                   metrics.elidedText(words, Qt::ElideRight, mark.width() - 2));
}

/// Without what surrounds the tile, which it is taken out of.
QPixmap StripTile::picture() {
  const double scale = devicePixelRatioF();
  QPixmap picture(size() * scale);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  paintTile(painter);
  return picture;
}

void StripTile::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  paintTile(painter);
  const TileSize tile{side_, shownSpan_};
  const QRectF body = tile.bodyRect();
  if (isChosen_ || hasFocus()) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(255, 255, 255, isChosen_ ? 255 : 170), 2.5));
    painter.drawRoundedRect(body.adjusted(-3, -3, 3, 3), tile.bodyRadius() + 3,
                            tile.bodyRadius() + 3);
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
  services_.drag.begin({widget_.id, {}, widget_.span}, picture(), *pressedAt_, global);
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

void StripTile::dragEnterEvent(QDragEnterEvent* event) {
  if (onFiles && !filesOf(*event->mimeData()).empty())
    event->acceptProposedAction();
}

void StripTile::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  onFiles(filesOf(*event->mimeData()));
}

void StripTile::enterEvent(QEnterEvent*) {
  update();
}

void StripTile::leaveEvent(QEvent*) {
  update();
}

} // namespace tavrin
