#include "TavrinSettings/Gallery/WidgetCard.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

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

void WidgetCard::setRecord(const DockWidget& widget, const QString& title) {
  if (widget == widget_ && title == title_)
    return;
  widget_ = widget;
  load_.span = widget.span;
  title_ = title;
  setAccessibleName(title);
  refreshTile();
}

void WidgetCard::tick() {
  if (followsTime(widget_.kind) && services_.stage.view(widget_, {tileSide, 1}) != painted_)
    refreshTile();
}

void WidgetCard::refreshTile() {
  tile_ = {};
  update();
}

QPixmap WidgetCard::tilePicture() {
  const double scale = devicePixelRatioF();
  if (tile_.isNull() || tile_.devicePixelRatio() != scale) {
    tile_ = QPixmap(QSizeF(tileSide * scale, tileSide * scale).toSize());
    tile_.setDevicePixelRatio(scale);
    tile_.fill(Qt::transparent);
    QPainter painter(&tile_);
    painted_ = services_.stage.view(widget_, {tileSide, 1});
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
  const auto placed = [&](const QRectF& place) {
    return panelPaint::visual(place, rect(), layoutDirection());
  };
  painter.drawPixmap(placed({padding, (height() - tileSide) / 2, tileSide, tileSide}).topLeft(),
                     tilePicture());
  const double left = padding * 2 + tileSide;
  const double room = width() - 3 * padding - tileSide;
  const QFont titleFont = panelFont(PanelTextStyle::title);
  const QFont font = panelFont(PanelTextStyle::caption);
  const double titleHeight = QFontMetricsF(titleFont).lineSpacing();
  const double wordsHeight = QFontMetricsF(font).lineSpacing() * 2;
  const double top = (height() - titleHeight - wordsHeight) / 2;
  // The sign of the pointer has its place whether it is there or not: no word moves for it.
  panelPaint::line(painter, title_,
                   placed({left, top, room - plusSide - padding / 2.0, titleHeight}), titleFont,
                   colours.text);
  painter.setFont(font);
  painter.setPen(colours.secondary);
  const auto side = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading);
  painter.drawText(placed({left, top + titleHeight + 1, room, wordsHeight}),
                   Qt::TextWordWrap | int((side | Qt::AlignTop | Qt::AlignAbsolute).toInt()),
                   sentence_);
  if (isHot)
    drawSymbol(
        painter, "plus.circle.fill",
        placed({static_cast<double>(width() - padding - plusSide), padding, plusSide, plusSide}),
        colours.accent);
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
  const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (isPlain && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
    click();
  else if (!(isPlain && onKey && onKey(event->key())) && !type(*event))
    QAbstractButton::keyPressEvent(event);
}

/// A letter begins a search. Space presses the card.
bool WidgetCard::type(const QKeyEvent& event) {
  const auto modifiers = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
  const auto typed = event.text();
  if (modifiers != Qt::NoModifier || typed.isEmpty() || !typed.front().isPrint() ||
      typed.front().isSpace() || !onType)
    return false;
  onType(typed);
  return true;
}

void WidgetCard::focusInEvent(QFocusEvent* event) {
  QAbstractButton::focusInEvent(event);
  if (onFocus)
    onFocus(event->reason() == Qt::MouseFocusReason);
}

void WidgetCard::enterEvent(QEnterEvent*) {
  update();
}

void WidgetCard::leaveEvent(QEvent*) {
  update();
}

} // namespace tavrin
