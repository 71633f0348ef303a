#pragma once

#include "TavrinHost/Dock/DockItems.h"

#include <QImage>
#include <QWidget>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace tavrin {

class DockItemTile;

/// The items of a Dock layout side by side, those right of the Dock's divider behind a line. They
/// are moved by dragging and by keys, also over the divider, removed by Delete and opened by a
/// click or Return. A letter leads to the next item that begins with it. Files are dropped from
/// elsewhere. What nobody listens to cannot be done.
class DockItemRow : public QWidget {
public:
  explicit DockItemRow(QWidget* parent = nullptr);
  ~DockItemRow() override;

  /// Does nothing for the items that are there. A tile stays that of its place.
  void setItems(const std::vector<DockItem>& left, const std::vector<DockItem>& right);
  const DockItem* itemAt(DockPosition position) const;
  QWidget* tileAt(DockPosition position) const;
  /// The keyboard to the item there.
  void focusAt(DockPosition position);
  /// Where an item stands, or one moved by as many places as `towards`; no value beyond the ends.
  std::optional<DockPosition> beside(DockPosition position, int towards) const;

  /// An item's picture, `side` points large; null for none.
  std::function<QImage(const DockItem& item, int side, double scale)> icon;

  /// `to` is counted without the item.
  std::function<void(const PlacedDockItem& item, DockPosition to)> onMove;
  std::function<void(const PlacedDockItem& item)> onRemove;
  std::function<void(const PlacedDockItem& item)> onOpen;
  std::function<void(const std::vector<std::filesystem::path>& files, DockPosition to)> onDrop;

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override { return {400, heightForWidth(width() > 0 ? width() : 400)}; }

protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

private:
  friend class DockItemTile;

  int columnsIn(int width) const;
  QRect rectOf(std::size_t cell, int width) const;
  void layOut();
  PlacedDockItem placed(const DockItemTile* tile) const;
  std::size_t indexOf(DockPosition position) const;
  /// Where something let go at the point comes, all items counted; marks it too.
  DockPosition markAt(QPoint point);
  void unmark();
  void move(DockItemTile* tile, int towards);
  void dragTo(DockItemTile* tile, QPoint point, bool isOver);
  void seek(const DockItemTile* from, const QString& letter);
  bool act(DockItemTile* tile, const QKeyEvent& event);

  void focusIndex(std::size_t index);
  void placeStop(std::size_t index);
  void wasFocused(const DockItemTile* tile);

  std::vector<DockItem> left_;
  std::vector<DockItem> right_;
  std::vector<DockItemTile*> tiles_;
  /// The items are one stop of Tab, at this one.
  std::size_t stop_ = 0;
  std::optional<QRect> mark_;
};

} // namespace tavrin
