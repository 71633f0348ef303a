#include "TavrinSettings/Gallery/FlowLayout.h"

#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace tavrin {

FlowLayout::FlowLayout(int columnWidth, int spacing, QWidget* parent)
    : QLayout(parent), columnWidth_(columnWidth) {
  setContentsMargins(0, 0, 0, 0);
  setSpacing(spacing);
}

FlowLayout::~FlowLayout() {
  for (auto* item : items_)
    delete item;
}

void FlowLayout::addItem(QLayoutItem* item) {
  items_.push_back(item);
}

QLayoutItem* FlowLayout::itemAt(int index) const {
  return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)] : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
  auto* item = itemAt(index);
  if (item != nullptr)
    items_.erase(items_.begin() + index);
  return item;
}

int FlowLayout::columnsIn(int width) const {
  return std::max(1, (width + spacing()) / (columnWidth_ + spacing()));
}

int FlowLayout::lay(const QRect& rect, bool isReal) const {
  const int columns = columnsIn(rect.width());
  const int width = (rect.width() - (columns - 1) * spacing()) / columns;
  int x = 0;
  int y = rect.y();
  int rowHeight = 0;
  const auto direction =
      parentWidget() != nullptr ? parentWidget()->layoutDirection() : Qt::LeftToRight;
  for (auto* item : items_) {
    if (item->isEmpty())
      continue;
    if (x == columns) {
      x = 0;
      y += rowHeight + spacing();
      rowHeight = 0;
    }
    const int height =
        item->hasHeightForWidth() ? item->heightForWidth(width) : item->sizeHint().height();
    if (isReal)
      item->setGeometry(QStyle::visualRect(direction, rect,
                                           {rect.x() + x * (width + spacing()), y, width, height}));
    rowHeight = std::max(rowHeight, height);
    ++x;
  }
  return y + rowHeight - rect.y();
}

int FlowLayout::heightForWidth(int width) const {
  return lay({0, 0, width, 0}, false);
}

QSize FlowLayout::sizeHint() const {
  return {columnWidth_ * 2 + spacing(), heightForWidth(columnWidth_ * 2 + spacing())};
}

QSize FlowLayout::minimumSize() const {
  return {columnWidth_, 0};
}

void FlowLayout::setGeometry(const QRect& rect) {
  QLayout::setGeometry(rect);
  lay(rect, true);
}

} // namespace tavrin
