#pragma once

#include "TavrinCore/Dock/DockItem.h"

#include <QImage>
#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

namespace tavrin {

class DockItemTile;

/// The items of a Dock layout side by side, those right of the Dock's divider behind a line. They
/// are moved by dragging and by keys, and removed by Delete; an item stays on its side.
class DockItemRow : public QWidget {
public:
  explicit DockItemRow(QWidget* parent = nullptr);
  ~DockItemRow() override;

  /// Does nothing for the items that are there; others take over keyboard and place from those.
  void setItems(const std::vector<DockItem>& left, const std::vector<DockItem>& right);
  /// An item's picture, `side` points large; null for none.
  std::function<QImage(const DockItem& item, int side, double scale)> icon;

  std::function<void(bool isRight, std::size_t from, std::size_t to)> onMove;
  std::function<void(bool isRight, std::size_t index)> onRemove;

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override { return {400, heightForWidth(width() > 0 ? width() : 400)}; }

protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

private:
  friend class DockItemTile;
  struct Place {
    bool isRight;
    std::size_t index;
  };

  int columnsIn(int width) const;
  QRect rectOf(std::size_t cell, int width) const;
  void layOut();
  Place placeOf(const DockItemTile* tile) const;
  void move(DockItemTile* tile, int towards);
  void dragTo(DockItemTile* tile, QPoint point, bool isOver);
  bool act(DockItemTile* tile, int key, Qt::KeyboardModifiers modifiers);

  void focusAt(std::size_t index);
  void placeStop(std::size_t index);
  void wasFocused(const DockItemTile* tile);

  std::vector<DockItem> left_;
  std::vector<DockItem> right_;
  std::vector<DockItemTile*> tiles_;
  /// The items are one stop of Tab, at this one.
  std::size_t stop_ = 0;
  std::size_t leftCount_ = 0;
  std::optional<QRect> mark_;
};

} // namespace tavrin
