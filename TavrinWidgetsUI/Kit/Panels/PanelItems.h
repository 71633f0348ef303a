#pragma once

#include <QPersistentModelIndex>
#include <QPoint>
#include <filesystem>
#include <string>
#include <vector>

class QAbstractItemView;
class QContextMenuEvent;
class QListView;
class QModelIndex;
class QMouseEvent;

namespace tavrin {

/// What lists and grids in panels have in common: no frame and no ground of their own, one Tab
/// stop, scrolling by points, hover.
void setUpPanelItems(QListView& view);

/// For a view that gets the keyboard: a screen reader is told of the current item, once it has been
/// told of the view.
void tellFocusedItem(QListView& view);

/// What a menu is asked for, and where on the screen it opens. The index is invalid beside all
/// items.
struct PanelMenuRequest {
  QPersistentModelIndex index;
  QPoint place;
};
/// Of a view's item: the current one where a key asks, else the one under the pointer.
PanelMenuRequest panelMenuRequest(const QAbstractItemView& view, const QContextMenuEvent& event);

/// Whether the pointer has been moved far enough from `pressed`, its left button held, to mean a
/// drag.
bool isPanelDrag(const QMouseEvent& event, QPoint pressed);
/// Drags files out of the panel, as copies, under a picture of the item at `index`. Returns at
/// once; nothing happens without files.
void dragFiles(const QListView& view, const QModelIndex& index,
               const std::vector<std::filesystem::path>& files);
/// Files as programs hand them to each other, a "text/uri-list".
std::string uriList(const std::vector<std::filesystem::path>& files);

} // namespace tavrin
