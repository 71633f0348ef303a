#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"

#include "TavrinPlatform/PlainToolTip.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelItems.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Views/Colour.h"
#include "TavrinWidgetsUI/Kit/Views/FocusRing.h"
#include "TavrinWidgetsUI/Kit/Views/PlainWords.h"

#include <QAbstractItemDelegate>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <algorithm>
#include <map>
#include <utility>

namespace tavrin {

namespace {

/// What a caption's line takes, and one of several.
constexpr double captionRoom = 18;
constexpr double captionLine = 14;

class CellModel : public QAbstractListModel {
public:
  using QAbstractListModel::QAbstractListModel;

  void set(std::vector<PanelCell> cells) {
    if (!make_ && cells.size() == cells_.size()) {
      for (int i = 0; i < count_; ++i) {
        const auto at = static_cast<std::size_t>(i);
        if (cells_[at] == cells[at])
          continue;
        cells_[at] = std::move(cells[at]);
        dataChanged(index(i), index(i));
      }
      return;
    }
    beginResetModel();
    make_ = nullptr;
    cells_ = std::move(cells);
    count_ = static_cast<int>(cells_.size());
    endResetModel();
  }
  void set(int count, std::function<PanelCell(int)> make) {
    beginResetModel();
    cells_.clear();
    count_ = count;
    make_ = std::move(make);
    endResetModel();
  }
  PanelCell cell(int index) const {
    if (index < 0 || index >= count_)
      return {};
    return make_ ? make_(index) : cells_[static_cast<std::size_t>(index)];
  }
  int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : count_; }
  QVariant data(const QModelIndex& index, int role) const override {
    switch (role) {
    case PanelGrid::cellRole:
      return QVariant::fromValue(cell(index.row()));
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
      return plainWords(cell(index.row()).name);
    default:
      return {};
    }
  }

private:
  std::vector<PanelCell> cells_;
  int count_ = 0;
  std::function<PanelCell(int)> make_;
};

void paintContent(QPainter& painter, const PanelCell& cell, const QRectF& rect,
                  const PanelPalette& colours) {
  if (!cell.image.isNull()) {
    painter.setOpacity(cell.isEnabled ? 1 : 0.4);
    panelPaint::picture(painter, cell.image, rect.adjusted(4, 4, -4, -4), colours.hairline);
    painter.setOpacity(1);
  } else if (cell.colour.isValid()) {
    const QColor fill = over(cell.colour, colours.ground);
    panelPaint::rounded(painter, rect.adjusted(4, 4, -4, -4), panel::cornerRadius, fill,
                        mix(fill, colours.text, 0.2));
  } else if (!cell.symbol.isEmpty()) {
    // Small cells hold emoji and the like, beside which a third would be lost.
    const double side = std::max(rect.width() * 0.3, std::min(16.0, rect.width() * 0.6));
    panelPaint::symbol(painter, cell.symbol, rect, side, colours.secondary);
  } else {
    QFont font = panelFont(PanelTextStyle::body);
    font.setPixelSize(std::max(11, int(rect.width() * 0.55)));
    panelPaint::line(painter, cell.text, rect, font, colours.text, Qt::AlignHCenter);
  }
}

class CellDelegate : public QAbstractItemDelegate {
public:
  explicit CellDelegate(PanelGrid* grid) : QAbstractItemDelegate(grid), grid_(grid) {}

  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
    return grid_->gridSize();
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const auto cell = index.data(PanelGrid::cellRole).value<PanelCell>();
    const PanelPalette colours = PanelPalette::from(grid_->palette());
    const QRectF rect = QRectF(option.rect).adjusted(1, 1, -1, -1);
    const bool hover = option.state.testFlag(QStyle::State_MouseOver);
    const bool isChosen = cell.isChecked || cell.isChosen ||
                          (index.row() == 0 && panelPaint::isLed(*grid_)) ||
                          (grid_->opensOnDoubleClick() && grid_->currentIndex() == index);
    const bool pressed = hover && QGuiApplication::mouseButtons().testFlag(Qt::LeftButton);
    painter->save();
    panelPaint::rounded(*painter, rect, panel::cornerRadius,
                        pressed    ? colours.rowPressed
                        : isChosen ? colours.rowSelected
                        : hover    ? colours.rowHover
                                   : QColor());
    QRectF square = rect;
    if (const double room = grid_->captionHeight(); rect.height() > rect.width() + room / 2) {
      square.setHeight(rect.height() - room);
      cut_[index.row()] = panelPaint::lines(
          *painter, cell.caption, {rect.left() + 3, square.bottom() - 3, rect.width() - 6, room},
          panelFont(PanelTextStyle::caption), cell.isEnabled ? colours.text : colours.secondary,
          cell.isFileName ? Qt::ElideMiddle : Qt::ElideRight);
    }
    paintContent(*painter, cell, square, colours);
    if (cell.isChecked) {
      const QRectF badge(rect.right() - 15, rect.bottom() - 15, 14, 14);
      panelPaint::rounded(*painter, badge, 7, colours.fill);
      panelPaint::symbol(*painter, QStringLiteral("checkmark"), badge, 9, colours.onFill);
    }
    if (grid_->currentIndex() == index && showsFocus(*grid_))
      drawFocusRing(*painter, rect, panel::cornerRadius, colours.accent);
    painter->restore();
  }

  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override {
    if (event->type() != QEvent::ToolTip)
      return QAbstractItemDelegate::helpEvent(event, view, option, index);
    if (!index.isValid())
      return true;
    const auto cell = index.data(PanelGrid::cellRole).value<PanelCell>();
    // What has its whole name below it says it itself.
    const auto cut = cut_.find(index.row());
    const bool isSaid = cell.caption == cell.name && (cut == cut_.end() || !cut->second);
    showPlainToolTip(event->globalPos(), isSaid ? QString() : cell.name, grid_->viewport(),
                     grid_->visualRect(index));
    return true;
  }

private:
  PanelGrid* grid_;
  /// Captions that were too long when they were painted last.
  mutable std::map<int, bool> cut_;
};

CellModel& modelOf(const PanelGrid& grid) {
  return static_cast<CellModel&>(*grid.model());
}

} // namespace

PanelGrid::PanelGrid(const QString& name, int columns, QWidget* parent)
    : QListView(parent), columns_(std::max(1, columns)) {
  setAccessibleName(name);
  setFlow(LeftToRight);
  setWrapping(true);
  setResizeMode(Adjust);
  setUpPanelItems(*this);
  setItemDelegate(new CellDelegate(this));
  setModel(new CellModel(this));
}

void PanelGrid::setCells(std::vector<PanelCell> cells) {
  const int current = currentCell();
  hasCaptions_ =
      std::ranges::any_of(cells, [](const auto& cell) { return !cell.caption.isEmpty(); });
  modelOf(*this).set(std::move(cells));
  if (current >= 0 && count() > 0)
    setCurrentCell(std::min(current, count() - 1));
  applySide();
}

void PanelGrid::setCells(int count, std::function<PanelCell(int)> cell) {
  modelOf(*this).set(count, std::move(cell));
  applySide();
}

int PanelGrid::count() const {
  return model()->rowCount();
}
PanelCell PanelGrid::cell(int index) const {
  return modelOf(*this).cell(index);
}

void PanelGrid::setCurrentCell(int index) {
  selectionModel()->setCurrentIndex(model()->index(index, 0), QItemSelectionModel::NoUpdate);
}

void PanelGrid::press(const QModelIndex& index) {
  if (!index.isValid())
    return;
  setCurrentCell(index.row());
  if (onOpen)
    onOpen(index.row());
}

void PanelGrid::setCaptionLines(int lines) {
  captionLines_ = lines;
  applySide();
}

int PanelGrid::captionHeight() const {
  return scaled(captionRoom + captionLine * (captionLines_ - 1));
}

void PanelGrid::setMaximumVisibleRows(int rows) {
  maximumRows_ = rows;
  applySide();
}

void PanelGrid::setVisibleRows(int rows) {
  leastRows_ = rows;
  setMaximumVisibleRows(rows);
}

// Room for the scroll bar is kept always, so that nothing moves when it comes.
int PanelGrid::side(int width) const {
  return std::max(24, (width - 9) / columns_);
}

int PanelGrid::cellHeight(int width) const {
  return side(width) + (hasCaptions_ ? captionHeight() : 0);
}

QSize PanelGrid::sizeHint() const {
  const int rows = (count() + columns_ - 1) / columns_;
  // Before it is laid out: as wide as its panel will make it.
  const int held = parentWidget() != nullptr ? parentWidget()->minimumWidth() - 2 * panel::grid : 0;
  const int width = testAttribute(Qt::WA_Resized) ? this->width() : held > 0 ? held : 344;
  return {width, std::min(std::max(rows, leastRows_), maximumRows_) * cellHeight(width)};
}

QSize PanelGrid::minimumSizeHint() const {
  return {120, std::min(count(), 1) * 24};
}

void PanelGrid::resizeEvent(QResizeEvent* event) {
  applySide();
  QListView::resizeEvent(event);
}

void PanelGrid::applySide() {
  const QSize cell(side(width()), cellHeight(width()));
  if (cell != gridSize())
    setGridSize(cell);
  updateGeometry();
}

void PanelGrid::setOpensOnDoubleClick(bool opens) {
  opensOnDoubleClick_ = opens;
  viewport()->update();
}

void PanelGrid::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  const bool hasCurrent = currentIndex().isValid();
  if (event->matches(QKeySequence::Copy) && onCopy && hasCurrent) {
    onCopy(currentCell());
  } else if ((key == Qt::Key_Delete || key == Qt::Key_Backspace) && onRemove && hasCurrent) {
    onRemove(currentCell());
  } else if (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Space) {
    QListView::keyPressEvent(event);
  } else if (onOpen && currentIndex().isValid()) {
    onOpen(currentCell());
  } else {
    event->ignore();
  }
}

void PanelGrid::mouseReleaseEvent(QMouseEvent* event) {
  QListView::mouseReleaseEvent(event);
  const QModelIndex index = indexAt(event->position().toPoint());
  pressed_ = QModelIndex();
  if (event->button() == Qt::LeftButton && index.isValid() && onOpen && !opensOnDoubleClick_)
    onOpen(index.row());
}

void PanelGrid::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    pressedAt_ = event->position().toPoint();
    pressed_ = indexAt(pressedAt_);
  }
  QListView::mousePressEvent(event);
}

void PanelGrid::mouseMoveEvent(QMouseEvent* event) {
  if (onDrag && pressed_.isValid() && isPanelDrag(*event, pressedAt_)) {
    const QModelIndex dragged = std::exchange(pressed_, QPersistentModelIndex());
    dragFiles(*this, dragged, onDrag(dragged.row()));
    return;
  }
  QListView::mouseMoveEvent(event);
}

void PanelGrid::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  if (!opensOnDoubleClick_)
    QListView::mouseDoubleClickEvent(event);
  else if (event->button() == Qt::LeftButton && index.isValid() && onOpen)
    onOpen(index.row());
}

void PanelGrid::contextMenuEvent(QContextMenuEvent* event) {
  const auto [index, place] = panelMenuRequest(*this, *event);
  if (!index.isValid())
    return;
  if (onMenu) {
    setCurrentCell(index.row());
    onMenu(index.row(), place);
    return;
  }
  if (actions_.isEmpty())
    return;
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (int i = 0; i < static_cast<int>(actions_.size()); ++i)
    menu->addAction(actions_[i], this, [this, index = index, i] {
      if (index.isValid() && onAction)
        onAction(index.row(), i);
    });
  menu->popup(place);
}

void PanelGrid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QListView::currentChanged(current, previous);
  if (onCurrentChange)
    onCurrentChange(current.row());
}

void PanelGrid::focusInEvent(QFocusEvent* event) {
  if (!currentIndex().isValid() && count() > 0)
    setCurrentCell(0);
  QListView::focusInEvent(event);
  tellFocusedItem(*this);
}

} // namespace tavrin
