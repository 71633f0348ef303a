#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"

#include "TavrinPlatform/PlainToolTip.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelItems.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelRowDelegate.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>
#include <utility>

namespace tavrin {

PanelList::PanelList(const QString& name, QWidget* parent) : QListView(parent) {
  setAccessibleName(name);
  setFont(panelFont(PanelTextStyle::body));
  setUpPanelItems(*this);
  setItemDelegate(new PanelRowDelegate(this));
  setModel(new PanelRowModel(this));
}

void PanelList::setModel(QAbstractItemModel* model) {
  QListView::setModel(model);
  connect(model, &QAbstractItemModel::modelReset, this, &PanelList::rowsChanged);
  connect(model, &QAbstractItemModel::rowsInserted, this, &PanelList::rowsChanged);
  connect(model, &QAbstractItemModel::rowsRemoved, this, &PanelList::rowsChanged);
  rowsChanged();
}

void PanelList::setRows(std::vector<PanelRow> rows) {
  auto* own = dynamic_cast<PanelRowModel*>(model());
  if (!own)
    return;
  const QString current = currentRow() >= 0 ? own->row(currentRow()).id : QString();
  const int before = currentRow();
  const int offset = verticalScrollBar()->value();
  own->setRows(std::move(rows));
  rowsChanged();
  int now = std::min(before, count() - 1);
  for (int i = 0; !current.isEmpty() && i < count(); ++i)
    if (own->row(i).id == current)
      now = i;
  if (now >= 0 && now != currentRow())
    selectionModel()->setCurrentIndex(own->index(now), QItemSelectionModel::NoUpdate);
  verticalScrollBar()->setValue(offset);
}

void PanelList::setRows(int count, std::function<PanelRow(int)> row) {
  if (auto* own = dynamic_cast<PanelRowModel*>(model()))
    own->setRows(count, std::move(row));
}

int PanelList::count() const {
  return model() ? model()->rowCount() : 0;
}

PanelRow PanelList::row(int index) const {
  return model()->index(index, 0).data(PanelRowModel::rowRole).value<PanelRow>();
}

void PanelList::setCurrentRow(int row) {
  setCurrentIndex(model()->index(row, 0));
}

void PanelList::rowsChanged() {
  // What is made on demand is not made for this: the first rows speak for the rest.
  bool subtitles = false;
  for (int i = 0; i < std::min(count(), 40) && !subtitles; ++i)
    subtitles = !row(i).subtitle.isEmpty();
  if (subtitles != hasSubtitles_) {
    hasSubtitles_ = subtitles;
    scheduleDelayedItemsLayout();
  }
  action_ = -1;
  updateGeometry();
}

int PanelList::rowHeight() const {
  return tall_ || hasSubtitles_ ? panel::tallRowHeight : panel::rowHeight;
}

void PanelList::setReadOnly(bool readOnly) {
  readOnly_ = readOnly;
  setFocusPolicy(readOnly ? Qt::NoFocus : Qt::TabFocus);
  viewport()->update();
}

void PanelList::setTall(bool tall) {
  tall_ = tall;
  scheduleDelayedItemsLayout();
  updateGeometry();
}

void PanelList::setMaximumVisibleRows(int rows) {
  maximumRows_ = rows;
  updateGeometry();
}

QSize PanelList::sizeHint() const {
  const int rows = maximumRows_ > 0 ? std::min(maximumRows_, count()) : count();
  return {200, std::min<int>(rows * rowHeight(), panel::maximumHeight)};
}

QSize PanelList::minimumSizeHint() const {
  return {80, std::min(count(), 3) * rowHeight()};
}

int PanelList::actionAt(const QModelIndex& index, const QPoint& point) const {
  const auto row = index.data(PanelRowModel::rowRole).value<PanelRow>();
  for (int i = 0; i < static_cast<int>(row.actions.size()); ++i)
    if (PanelRowDelegate::actionRect(row, i, visualRect(index), layoutDirection()).contains(point))
      return i;
  return -1;
}

QRect PanelList::wordsRect(int row) const {
  const QRect rect = visualRect(model()->index(row, 0));
  const auto* delegate = static_cast<const PanelRowDelegate*>(itemDelegate());
  const QRectF words(
      rect.adjusted(static_cast<int>(delegate->wordsInset(this->row(row))), 0, 0, 0));
  return panelPaint::visual(words, rect, layoutDirection()).toRect();
}

void PanelList::press(const QModelIndex& index) {
  setCurrentIndex(index);
  open(index);
}

void PanelList::open(const QModelIndex& index) {
  if (index.isValid() && index.flags().testFlag(Qt::ItemIsEnabled) && onOpen)
    onOpen(index.row());
}

void PanelList::trigger(const QModelIndex& index, int action) {
  if (index.isValid() && action >= 0 && onAction)
    onAction(index.row(), action);
}

void PanelList::keyPressEvent(QKeyEvent* event) {
  const QModelIndex index = currentIndex();
  if (event->matches(QKeySequence::Copy) && onCopy && index.isValid()) {
    onCopy(index.row());
    return;
  }
  const int actions = index.isValid() ? static_cast<int>(row(index.row()).actions.size()) : 0;
  const bool mirrored = layoutDirection() == Qt::RightToLeft;
  switch (event->key()) {
  case Qt::Key_Return:
  case Qt::Key_Enter:
  case Qt::Key_Space:
    if (!index.isValid() || (action_ < 0 && !onOpen)) {
      event->ignore();
    } else if (action_ >= 0) {
      trigger(index, action_);
    } else if (event->key() == Qt::Key_Space && onSpace) {
      onSpace(index.row());
    } else {
      open(index);
    }
    return;
  case Qt::Key_Left:
  case Qt::Key_Right: {
    const bool forward = (event->key() == Qt::Key_Right) != mirrored;
    action_ = std::clamp(action_ + (forward ? 1 : -1), -1, actions - 1);
    viewport()->update();
    return;
  }
  case Qt::Key_Home:
  case Qt::Key_End:
    // Qt's own End is the end of what it has laid out so far.
    if (count() > 0)
      setCurrentRow(event->key() == Qt::Key_Home ? 0 : count() - 1);
    return;
  case Qt::Key_Delete:
  case Qt::Key_Backspace:
    if (index.isValid() && onRemove)
      onRemove(index.row());
    else
      event->ignore();
    return;
  default:
    QListView::keyPressEvent(event);
  }
}

void PanelList::mousePressEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  if (readOnly_ || event->button() != Qt::LeftButton || !index.isValid())
    return;
  pressed_ = index;
  pressedAction_ = actionAt(index, event->position().toPoint());
  pressedAt_ = event->position().toPoint();
  update(index);
}

void PanelList::mouseReleaseEvent(QMouseEvent* event) {
  const QPoint point = event->position().toPoint();
  const QModelIndex index = indexAt(point);
  const QModelIndex pressed = pressed_;
  pressed_ = QModelIndex();
  if (event->button() != Qt::LeftButton || !pressed.isValid())
    return;
  update(pressed);
  if (index != pressed || actionAt(index, point) != pressedAction_)
    return;
  if (pressedAction_ >= 0)
    trigger(index, pressedAction_);
  else
    open(index);
}

void PanelList::mouseMoveEvent(QMouseEvent* event) {
  QListView::mouseMoveEvent(event);
  if (readOnly_)
    return;
  update(indexAt(event->position().toPoint()));
  if (onDrag && pressed_.isValid() && pressedAction_ < 0 && isPanelDrag(*event, pressedAt_)) {
    const QModelIndex dragged = std::exchange(pressed_, QPersistentModelIndex());
    dragFiles(*this, dragged, onDrag(dragged.row()));
  }
}

void PanelList::focusInEvent(QFocusEvent* event) {
  if (!currentIndex().isValid() && count() > 0)
    selectionModel()->setCurrentIndex(model()->index(0, 0), QItemSelectionModel::NoUpdate);
  QListView::focusInEvent(event);
  tellFocusedItem(*this);
}

void PanelList::contextMenuEvent(QContextMenuEvent* event) {
  const auto [index, place] = panelMenuRequest(*this, *event);
  if (readOnly_ || !index.isValid())
    return;
  if (onMenu) {
    setCurrentRow(index.row());
    onMenu(index.row(), place);
    return;
  }
  const PanelRow chosen = row(index.row());
  if (chosen.actions.empty())
    return;
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (int i = 0; i < static_cast<int>(chosen.actions.size()); ++i)
    menu->addAction(chosen.actions[static_cast<std::size_t>(i)].name, this,
                    [this, index = index, i] { trigger(index, i); });
  menu->popup(place);
}

void PanelList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  action_ = -1;
  QListView::currentChanged(current, previous);
}

bool PanelList::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip)
    return QListView::viewportEvent(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const QModelIndex index = indexAt(help->pos());
  if (!index.isValid())
    return true;
  const PanelRow under = row(index.row());
  const int action = actionAt(index, help->pos());
  // A title that is whole says itself.
  const bool isCut = static_cast<const PanelRowDelegate*>(itemDelegate())->isCut(index);
  showPlainToolTip(help->globalPos(),
                   action >= 0 ? under.actions[static_cast<std::size_t>(action)].name
                   : isCut     ? under.title
                               : QString(),
                   viewport(), visualRect(index));
  return true;
}

} // namespace tavrin
