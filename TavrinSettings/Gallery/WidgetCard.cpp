#include "TavrinSettings/Gallery/WidgetCard.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>

namespace tavrin {
namespace {

constexpr int padding = 10;
constexpr int plusSide = 18;

} // namespace

WidgetCard::WidgetCard(PageServices& services, DockWidget widget, DragLoad load,
                       const QString& title, const QString& sentence, QWidget* parent)
    : QAbstractButton(parent), services_(services), widget_(std::move(widget)),
      load_(std::move(load)), title_(title), sentence_(sentence) {
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(title);
  setAccessibleDescription(sentence);
}

QPixmap WidgetCard::tilePicture() {
  const double scale = devicePixelRatioF();
  if (tile_.isNull() || tile_.devicePixelRatio() != scale) {
    tile_ = QPixmap(QSizeF(tileSide * scale, tileSide * scale).toSize());
    tile_.setDevicePixelRatio(scale);
    tile_.fill(Qt::transparent);
    QPainter painter(&tile_);
    services_.stage.paint(painter, widget_, {tileSide, 1}, {0, 0});
  }
  return tile_;
}

void WidgetCard::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const auto colours = PanelPalette::from(palette());
  const bool isHot = underMouse() && isEnabled();
  panelPaint::rounded(painter, QRectF(rect()), 10,
                      isDown() ? colours.controlPressed
                      : isHot  ? colours.controlHover
                               : colours.control);
  painter.setOpacity(isEnabled() ? 1 : 0.45);
  painter.drawPixmap(QPointF(padding, (height() - tileSide) / 2), tilePicture());
  const QRectF words(padding * 2 + tileSide, padding,
                     width() - 3 * padding - tileSide - (isHot ? plusSide : 0),
                     height() - 2 * padding);
  const QFontMetricsF titleMetrics(panelFont(PanelTextStyle::title));
  const QFontMetricsF metrics(panelFont(PanelTextStyle::caption));
  const double titleHeight = titleMetrics.lineSpacing();
  const double room = metrics.lineSpacing() * 2;
  const double top = (height() - titleHeight - room) / 2;
  painter.setFont(panelFont(PanelTextStyle::title));
  painter.setPen(colours.text);
  painter.drawText(QRectF(words.left(), top, words.width(), titleHeight), Qt::AlignVCenter,
                   titleMetrics.elidedText(title_, Qt::ElideRight, words.width()));
  painter.setFont(panelFont(PanelTextStyle::caption));
  painter.setPen(colours.secondary);
  painter.drawText(QRectF(words.left(), top + titleHeight + 1, words.width(), room),
                   Qt::TextWordWrap | Qt::AlignTop, sentence_);
  if (isHot)
    drawSymbol(painter, "plus.circle.fill",
               QRectF(width() - padding - plusSide, padding, plusSide, plusSide), colours.accent);
}

void WidgetCard::mousePressEvent(QMouseEvent* event) {
  pressedAt_ = event->position().toPoint();
  QAbstractButton::mousePressEvent(event);
}

void WidgetCard::mouseMoveEvent(QMouseEvent* event) {
  const QPoint global = event->globalPosition().toPoint();
  if (services_.drag.isActive())
    return services_.drag.moveTo(global);
  if (!pressedAt_ || !(event->buttons() & Qt::LeftButton) ||
      (event->position().toPoint() - *pressedAt_).manhattanLength() <
          QApplication::startDragDistance())
    return;
  setDown(false);
  services_.drag.begin(load_, tilePicture(), QPointF(tileSide / 2, tileSide / 2).toPoint(), global);
}

void WidgetCard::mouseReleaseEvent(QMouseEvent* event) {
  pressedAt_.reset();
  if (services_.drag.isActive())
    return services_.drag.drop(event->globalPosition().toPoint());
  QAbstractButton::mouseReleaseEvent(event);
}

void WidgetCard::keyPressEvent(QKeyEvent* event) {
  const auto move = [&](int cards, int rows) {
    if (onMove)
      onMove(cards, rows);
  };
  switch (event->key()) {
  case Qt::Key_Left:
    return move(-1, 0);
  case Qt::Key_Right:
    return move(1, 0);
  case Qt::Key_Up:
    return move(0, -1);
  case Qt::Key_Down:
    return move(0, 1);
  case Qt::Key_Return:
  case Qt::Key_Enter:
    return click();
  default:
    QAbstractButton::keyPressEvent(event);
  }
}

void WidgetCard::enterEvent(QEnterEvent*) {
  update();
}

void WidgetCard::leaveEvent(QEvent*) {
  update();
}

} // namespace tavrin
