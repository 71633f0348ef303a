#include "TavrinSettings/Dock/DockItemRow.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/FoldedName.h"
#include "TavrinSettings/Base/DroppedFiles.h"
#include "TavrinSettings/Base/TabStop.h"
#include "TavrinWidgetsUI/Collection/CollectionViews.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
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

/// Right of the divider an application is a plain file.
std::optional<AppEntry> applicationOf(const DockItem& item) {
  if (item.app() != nullptr)
    return *item.app();
  const auto* file = item.file();
  if (file == nullptr || !file->path.ends_with(".app"))
    return std::nullopt;
  return AppEntry{file->path, std::nullopt, file->displayName, std::nullopt};
}

/// Points from either side, so that its width tells which it is.
double spacerInset(SpacerVariant variant) {
  return variant == SpacerVariant::small ? 13 : variant == SpacerVariant::flex ? -10 : 4;
}

} // namespace

class DockItemTile : public QAbstractButton {
public:
  explicit DockItemTile(DockItemRow& row) : QAbstractButton(&row), row_(row) {
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QAbstractButton::clicked, this, [this] {
      if (row_.onOpen)
        row_.onOpen(row_.placed(this));
    });
  }
  void setItem(const DockItem& item, bool isRight) {
    item_ = item;
    const auto name = utf8(item_.displayName());
    setAccessibleName(name);
    setAccessibleDescription(
        isRight ? worded("{kind}, right of the divider", {{"kind", translated(kindWord(item_))}})
                : worded("{kind}, left of the divider", {{"kind", translated(kindWord(item_))}}));
    setPlainToolTip(this, name);
    update();
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
      const double inset = spacerInset(*item_.spacer());
      painter.drawRoundedRect(icon.adjusted(inset, 4, -inset, -4), 6, 6);
    } else if (item_.file() != nullptr && !applicationOf(item_)) {
      drawSymbol(painter, item_.file()->isDirectory ? "folder.fill" : "doc.fill", icon,
                 colours.accent);
    } else if (item_.url() != nullptr) {
      drawSymbol(painter, "globe", icon, colours.accent);
    } else {
      QImage picture =
          row_.icon ? row_.icon({*applicationOf(item_)}, iconSide, devicePixelRatioF()) : QImage();
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
    if (!isDragging_ && row_.onMove && (event->buttons() & Qt::LeftButton) &&
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
    if (!row_.act(this, *event))
      QAbstractButton::keyPressEvent(event);
  }

private:
  DockItemRow& row_;
  DockItem item_{SpacerVariant::standard};
  QPoint pressedAt_;
  bool isDragging_ = false;
};

DockItemRow::DockItemRow(QWidget* parent) : QWidget(parent) {
  setAccessibleName(worded("Items"));
  setAcceptDrops(true);
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
  const bool hadFocus =
      std::ranges::any_of(tiles_, [](const DockItemTile* tile) { return tile->hasFocus(); });
  mark_.reset();
  const std::size_t count = left.size() + right.size();
  while (tiles_.size() > count) {
    tiles_.back()->hide();
    tiles_.back()->deleteLater();
    tiles_.pop_back();
  }
  while (tiles_.size() < count) {
    auto* tile = new DockItemTile(*this);
    setTabOrder(tiles_.empty() ? static_cast<QWidget*>(this) : tiles_.back(), tile);
    tiles_.push_back(tile);
  }
  for (std::size_t i = 0; i < count; ++i)
    tiles_[i]->setItem(i < left.size() ? left[i] : right[i - left.size()], i >= left.size());
  layOut();
  for (auto* tile : tiles_)
    tile->show();
  updateGeometry();
  stop_ = std::min(stop_, count == 0 ? 0 : count - 1);
  placeStop(stop_);
  if (hadFocus)
    focusIndex(stop_);
}

std::size_t DockItemRow::indexOf(DockPosition position) const {
  return position.index + (position.section == DockSection::others ? left_.size() : 0);
}

const DockItem* DockItemRow::itemAt(DockPosition position) const {
  const auto& items = position.section == DockSection::apps ? left_ : right_;
  return position.index < items.size() ? &items[position.index] : nullptr;
}

QWidget* DockItemRow::tileAt(DockPosition position) const {
  return itemAt(position) == nullptr ? nullptr : tiles_[indexOf(position)];
}

void DockItemRow::focusAt(DockPosition position) {
  if (itemAt(position) != nullptr)
    focusIndex(indexOf(position));
}

void DockItemRow::placeStop(std::size_t index) {
  stop_ = index;
  makeTabStop(tiles_, index < tiles_.size() ? tiles_[index] : nullptr);
}

void DockItemRow::focusIndex(std::size_t index) {
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
    tiles_[i]->setGeometry(rectOf(i < left_.size() ? i : i + 1, width()));
  update();
}

void DockItemRow::resizeEvent(QResizeEvent*) {
  layOut();
}

void DockItemRow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const auto colours = PanelPalette::from(palette());
  const QRect divider = rectOf(left_.size(), width());
  if (!tiles_.empty())
    painter.fillRect(QRect(divider.center().x(), divider.top() + 10, 1, divider.height() - 26),
                     colours.hairline);
  if (tiles_.empty() && onDrop)
    panelPaint::lines(painter,
                      worded("It has no items. “Take the Dock As It Is” gives it the Dock's, and "
                             "“Add…” or dropping files here others."),
                      QRectF(rect()), panelFont(PanelTextStyle::secondary), colours.secondary);
  if (mark_)
    panelPaint::rounded(painter, QRectF(*mark_), 1.5, colours.accent);
}

PlacedDockItem DockItemRow::placed(const DockItemTile* tile) const {
  const auto index = static_cast<std::size_t>(std::ranges::find(tiles_, tile) - tiles_.begin());
  return index < left_.size() ? PlacedDockItem{DockSection::apps, index, left_[index]}
                              : PlacedDockItem{DockSection::others, index - left_.size(),
                                               right_[index - left_.size()]};
}

std::optional<DockPosition> DockItemRow::beside(DockPosition position, int towards) const {
  const bool isLeft = position.section == DockSection::apps;
  const auto count = isLeft ? left_.size() : right_.size();
  if (towards < 0 && position.index == 0)
    return isLeft ? std::nullopt : std::optional(DockPosition{DockSection::apps, left_.size()});
  if (towards > 0 && position.index + 1 >= count)
    return isLeft ? std::optional(DockPosition{DockSection::others, 0}) : std::nullopt;
  return DockPosition{position.section, towards < 0 ? position.index - 1 : position.index + 1};
}

void DockItemRow::move(DockItemTile* tile, int towards) {
  const auto item = placed(tile);
  if (const auto to = beside({item.section, item.index}, towards); to && onMove) {
    onMove(item, *to);
    focusAt(*to);
  }
}

DockPosition DockItemRow::markAt(QPoint point) {
  const bool isMirrored = layoutDirection() == Qt::RightToLeft;
  const std::size_t cells = tiles_.size() + 1;
  std::size_t before = 0;
  for (std::size_t i = 0; i < cells; ++i) {
    const QRect rect = rectOf(i, width());
    const int past = isMirrored ? rect.center().x() - point.x() : point.x() - rect.center().x();
    if (rect.bottom() < point.y() || (rect.top() <= point.y() && past > 0))
      before = i + 1;
  }
  const QRect rect = rectOf(std::min(before, cells - 1), width());
  const int x = (before < cells) != isMirrored ? rect.left() : rect.right();
  mark_ = QRect(x - 1, rect.top() + 8, 3, iconSide);
  update();
  return before <= left_.size() ? DockPosition{DockSection::apps, before}
                                : DockPosition{DockSection::others, before - left_.size() - 1};
}

void DockItemRow::unmark() {
  mark_.reset();
  update();
}

void DockItemRow::dragTo(DockItemTile* tile, QPoint point, bool isOver) {
  auto to = markAt(point);
  if (!isOver)
    return;
  unmark();
  const auto item = placed(tile);
  if (to.section == item.section && to.index > item.index)
    --to.index;
  if (to != DockPosition{item.section, item.index} && onMove)
    onMove(item, to);
  // Also where it could not be moved.
  layOut();
}

void DockItemRow::dragEnterEvent(QDragEnterEvent* event) {
  if (onDrop && !filesOf(*event->mimeData()).empty())
    event->acceptProposedAction();
}

void DockItemRow::dragMoveEvent(QDragMoveEvent* event) {
  markAt(event->position().toPoint());
  event->acceptProposedAction();
}

void DockItemRow::dragLeaveEvent(QDragLeaveEvent*) {
  unmark();
}

void DockItemRow::dropEvent(QDropEvent* event) {
  const auto to = markAt(event->position().toPoint());
  unmark();
  event->acceptProposedAction();
  onDrop(filesOf(*event->mimeData()), to);
}

void DockItemRow::seek(const DockItemTile* from, const QString& letter) {
  const auto begin = folded(letter.toStdString());
  const auto at = static_cast<std::size_t>(std::ranges::find(tiles_, from) - tiles_.begin());
  for (std::size_t i = 1; i <= tiles_.size(); ++i) {
    const auto index = (at + i) % tiles_.size();
    if (folded(tiles_[index]->accessibleName().toStdString()).starts_with(begin))
      return focusIndex(index);
  }
}

bool DockItemRow::act(DockItemTile* tile, const QKeyEvent& event) {
  const auto key = event.key();
  const auto modifiers = event.modifiers();
  const int onwards = layoutDirection() == Qt::RightToLeft ? Qt::Key_Left : Qt::Key_Right;
  const int towards = key != Qt::Key_Left && key != Qt::Key_Right ? 0 : key == onwards ? 1 : -1;
  const auto at = std::ranges::find(tiles_, tile) - tiles_.begin();
  const bool isLetter = event.text().size() == 1 && event.text().front().isLetterOrNumber() &&
                        (modifiers & ~Qt::ShiftModifier) == Qt::NoModifier;
  if (towards != 0 && modifiers == Qt::ControlModifier) {
    move(tile, towards);
  } else if (towards != 0 && modifiers == Qt::NoModifier) {
    if (at + towards >= 0)
      focusIndex(static_cast<std::size_t>(at + towards));
  } else if ((key == Qt::Key_Home || key == Qt::Key_End) && modifiers == Qt::NoModifier) {
    focusIndex(key == Qt::Key_Home ? 0 : tiles_.size() - 1);
  } else if (key == Qt::Key_Delete || key == Qt::Key_Backspace) {
    if (onRemove)
      onRemove(placed(tile));
  } else if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Menu) {
    tile->click();
  } else if (isLetter) {
    seek(tile, event.text());
  } else {
    return false;
  }
  return true;
}

} // namespace tavrin
