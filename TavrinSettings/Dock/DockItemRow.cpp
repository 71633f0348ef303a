#include "TavrinSettings/Dock/DockItemRow.h"

#include "TavrinSettings/Base/TabStop.h"
#include "TavrinWidgetsUI/Collection/CollectionViews.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr int cellWidth = 72;
constexpr int cellHeight = 76;
constexpr int iconSide = 40;

} // namespace

class DockItemTile : public QAbstractButton {
public:
  DockItemTile(DockItemRow& row, DockItem item)
      : QAbstractButton(&row), row_(row), item_(std::move(item)) {
    setFocusPolicy(Qt::StrongFocus);
    const auto name = QString::fromStdString(item_.displayName());
    setAccessibleName(name);
    setPlainToolTip(this, name);
  }

protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto colours = PanelPalette::from(palette());
    if (underMouse() || isDown())
      panelPaint::rounded(painter, QRectF(rect()).adjusted(1, 1, -1, -1), 8, colours.rowHover);
    const QRectF icon((width() - iconSide) / 2.0, 8, iconSide, iconSide);
    const auto name = QString::fromStdString(item_.displayName());
    if (item_.spacer() != nullptr) {
      painter.setPen(QPen(colours.outline, 1, Qt::DashLine));
      painter.drawRoundedRect(icon.adjusted(4, 4, -4, -4), 6, 6);
    } else if (item_.file() != nullptr) {
      drawSymbol(painter, item_.file()->isDirectory ? "folder.fill" : "doc.fill", icon,
                 colours.accent);
    } else if (item_.url() != nullptr) {
      drawSymbol(painter, "globe", icon, colours.accent);
    } else {
      QImage picture = row_.icon ? row_.icon(item_, iconSide, devicePixelRatioF()) : QImage();
      if (picture.isNull())
        picture =
            appMonogramImage(name, iconSide, static_cast<int>(std::ceil(devicePixelRatioF())));
      painter.setRenderHint(QPainter::SmoothPixmapTransform);
      painter.drawImage(icon, picture);
    }
    painter.setFont(panelFont(PanelTextStyle::caption));
    painter.setPen(colours.text);
    // A name that is cut ends where it ends, whatever the interface reads like.
    painter.setLayoutDirection(name.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    const QFontMetrics metrics(painter.font());
    painter.drawText(QRectF(2, icon.bottom() + 4, width() - 4, 20), Qt::AlignHCenter,
                     metrics.elidedText(name, Qt::ElideRight, width() - 6));
  }

  void mousePressEvent(QMouseEvent* event) override {
    pressedAt_ = event->position().toPoint();
    QAbstractButton::mousePressEvent(event);
  }
  void mouseMoveEvent(QMouseEvent* event) override {
    if (!isDragging_ && (event->buttons() & Qt::LeftButton) &&
        (event->position().toPoint() - pressedAt_).manhattanLength() >=
            QApplication::startDragDistance()) {
      isDragging_ = true;
      setDown(false);
      raise();
    }
    if (isDragging_) {
      move(mapToParent(event->position().toPoint() - pressedAt_));
      row_.dragTo(this, geometry().center(), false);
    }
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (std::exchange(isDragging_, false))
      row_.dragTo(this, geometry().center(), true);
    else
      QAbstractButton::mouseReleaseEvent(event);
  }
  void focusInEvent(QFocusEvent* event) override {
    QAbstractButton::focusInEvent(event);
    row_.wasFocused(this);
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (!row_.act(this, event->key(), event->modifiers()))
      QAbstractButton::keyPressEvent(event);
  }

private:
  DockItemRow& row_;
  DockItem item_;
  QPoint pressedAt_;
  bool isDragging_ = false;
};

DockItemRow::DockItemRow(QWidget* parent) : QWidget(parent) {
  setAccessibleName(worded("Items"));
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

DockItemRow::~DockItemRow() = default;

void DockItemRow::setItems(const std::vector<DockItem>& left, const std::vector<DockItem>& right) {
  if (left == left_ && right == right_)
    return;
  left_ = left;
  right_ = right;
  const auto focused =
      std::ranges::find_if(tiles_, [](const DockItemTile* tile) { return tile->hasFocus(); });
  const bool hadFocus = focused != tiles_.end();
  const auto place = static_cast<std::size_t>(focused - tiles_.begin());
  auto before = std::exchange(tiles_, {});
  mark_.reset();
  leftCount_ = left.size();
  QWidget* last = this;
  for (const auto* items : {&left, &right})
    for (const auto& item : *items) {
      auto* tile = new DockItemTile(*this, item);
      tile->show();
      setTabOrder(last, tile);
      last = tile;
      tiles_.push_back(tile);
    }
  layOut();
  updateGeometry();
  stop_ = std::min(hadFocus ? place : stop_, tiles_.empty() ? 0 : tiles_.size() - 1);
  placeStop(stop_);
  if (hadFocus && !tiles_.empty())
    focusAt(stop_);
  for (auto* tile : before) {
    tile->hide();
    tile->deleteLater();
  }
}

void DockItemRow::placeStop(std::size_t index) {
  stop_ = index;
  makeTabStop(tiles_, index < tiles_.size() ? tiles_[index] : nullptr);
}

void DockItemRow::focusAt(std::size_t index) {
  if (index < tiles_.size())
    tiles_[index]->setFocus(Qt::TabFocusReason);
}

void DockItemRow::wasFocused(const DockItemTile* tile) {
  placeStop(static_cast<std::size_t>(std::ranges::find(tiles_, tile) - tiles_.begin()));
}

int DockItemRow::columnsIn(int width) const {
  return std::max(1, width / cellWidth);
}

/// The divider has a cell of its own.
QRect DockItemRow::rectOf(std::size_t cell, int width) const {
  const auto columns = static_cast<std::size_t>(columnsIn(width));
  const QRect place(static_cast<int>(cell % columns) * cellWidth,
                    static_cast<int>(cell / columns) * cellHeight, cellWidth, cellHeight);
  return QStyle::visualRect(layoutDirection(), QRect(0, 0, width, place.bottom() + 1), place);
}

int DockItemRow::heightForWidth(int width) const {
  const std::size_t cells = tiles_.size() + 1;
  return rectOf(cells - 1, width).bottom() + 1;
}

void DockItemRow::layOut() {
  for (std::size_t i = 0; i < tiles_.size(); ++i)
    tiles_[i]->setGeometry(rectOf(i < leftCount_ ? i : i + 1, width()));
  update();
}

void DockItemRow::resizeEvent(QResizeEvent*) {
  layOut();
}

void DockItemRow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const auto colours = PanelPalette::from(palette());
  const QRect divider = rectOf(leftCount_, width());
  if (!tiles_.empty())
    painter.fillRect(QRect(divider.center().x(), divider.top() + 10, 1, divider.height() - 26),
                     colours.hairline);
  if (tiles_.empty())
    panelPaint::line(painter, worded("It has no items. “Take the Dock As It Is” gives it some."),
                     QRectF(rect()), panelFont(PanelTextStyle::secondary), colours.secondary);
  if (mark_)
    panelPaint::rounded(painter, QRectF(*mark_), 1.5, colours.accent);
}

DockItemRow::Place DockItemRow::placeOf(const DockItemTile* tile) const {
  const auto index = static_cast<std::size_t>(std::ranges::find(tiles_, tile) - tiles_.begin());
  return index < leftCount_ ? Place{false, index} : Place{true, index - leftCount_};
}

void DockItemRow::move(DockItemTile* tile, int towards) {
  const auto place = placeOf(tile);
  const auto count = place.isRight ? tiles_.size() - leftCount_ : leftCount_;
  const auto to = static_cast<std::ptrdiff_t>(place.index) + towards;
  if (to < 0 || to >= static_cast<std::ptrdiff_t>(count) || !onMove)
    return;
  const auto cell = static_cast<std::size_t>(to) + (place.isRight ? leftCount_ : 0);
  onMove(place.isRight, place.index, static_cast<std::size_t>(to));
  // The items were made anew.
  focusAt(cell);
}

void DockItemRow::dragTo(DockItemTile* tile, QPoint point, bool isOver) {
  const auto place = placeOf(tile);
  const std::size_t first = place.isRight ? leftCount_ + 1 : 0;
  const std::size_t count = place.isRight ? tiles_.size() - leftCount_ : leftCount_;
  const bool isMirrored = layoutDirection() == Qt::RightToLeft;
  std::size_t before = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const QRect rect = rectOf(first + i, width());
    const int past = isMirrored ? rect.center().x() - point.x() : point.x() - rect.center().x();
    if (rect.bottom() < point.y() || (rect.top() <= point.y() && past > 0))
      before = i + 1;
  }
  if (!isOver) {
    const QRect rect = rectOf(first + std::min(before, count - 1), width());
    const int x = (before < count) != isMirrored ? rect.left() : rect.right();
    mark_ = QRect(x - 1, rect.top() + 8, 3, iconSide);
    update();
    return;
  }
  mark_.reset();
  const std::size_t to = before > place.index ? before - 1 : before;
  if (to != place.index && onMove)
    onMove(place.isRight, place.index, to);
  else
    layOut();
}

bool DockItemRow::act(DockItemTile* tile, int key, Qt::KeyboardModifiers modifiers) {
  const int onwards = layoutDirection() == Qt::RightToLeft ? Qt::Key_Left : Qt::Key_Right;
  const int towards = key != Qt::Key_Left && key != Qt::Key_Right ? 0 : key == onwards ? 1 : -1;
  const auto at = std::ranges::find(tiles_, tile) - tiles_.begin();
  if (towards != 0 && modifiers == Qt::ControlModifier) {
    move(tile, towards);
  } else if (towards != 0 && modifiers == Qt::NoModifier) {
    if (at + towards >= 0)
      focusAt(static_cast<std::size_t>(at + towards));
  } else if ((key == Qt::Key_Home || key == Qt::Key_End) && modifiers == Qt::NoModifier) {
    focusAt(key == Qt::Key_Home ? 0 : tiles_.size() - 1);
  } else if (key == Qt::Key_Delete || key == Qt::Key_Backspace) {
    const auto place = placeOf(tile);
    if (onRemove)
      onRemove(place.isRight, place.index);
  } else {
    return false;
  }
  return true;
}

} // namespace tavrin
