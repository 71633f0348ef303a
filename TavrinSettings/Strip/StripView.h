#pragma once

#include "TavrinSettings/Base/PageServices.h"
#include "TavrinSettings/Strip/StripCells.h"

#include <QWidget>
#include <map>
#include <memory>

namespace tavrin {

class FreePlace;
class StripTile;

/// The strip as it stands on the desktop: its tiles in their order and widths, and the places that
/// are free. Tiles are moved, widened and taken off by mouse and keys. It reads from left to right
/// in every language, as the strip on the desktop does.
class StripView : public QWidget {
public:
  StripView(PageServices& services, QWidget* parent = nullptr);

  /// Shows what the editor says.
  void refresh();
  void setChosen(const std::optional<UUID>& id);
  /// Marks the place where what is added comes to stand.
  void setAwaiting(bool isAwaiting);
  /// The tile gets the keyboard. False where it is not on the strip.
  bool focusTile(const UUID& id);
  /// The pictures of applications have come.
  void refreshTiles();

  /// What the keys do, also for buttons that do the same.
  void moveBy(const UUID& id, int places);
  void widenBy(const UUID& id, int tiles);
  void takeOff(const UUID& id);

  /// A tile was chosen; with `isOpened` its settings are wanted.
  std::function<void(const UUID& id, bool isOpened)> onChoose;
  /// A tile was chosen by a key that leads into its settings.
  std::function<void(const UUID& id)> onEnter;
  /// A free place was clicked.
  std::function<void()> onAdd;
  /// A widget that was not on the strip was dropped on it.
  std::function<void(const UUID& id)> onPlaced;

  QSize sizeHint() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;

  /// Whether a drag is over the strip, so that letting go puts the tile there.
  bool takesDropAt(QPoint globalPlace) const;

protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

private:
  void put(const std::vector<std::filesystem::path>& files, const StripTile& tile);
  void takeOffStrip(const UUID& id);
  void moveTo(const UUID& id, std::size_t place);
  void widenTo(const UUID& id, int span);
  StripTile* makeTile(const DockWidget& widget);
  StripCells cells(double width) const;
  void layOut();
  /// Has the tiles' pictures come while they are to be seen.
  void followTiles();
  bool act(StripTile& tile, QKeyEvent* event);
  void resizeTile(StripTile& tile, double right, bool isOver);
  void dragMoved(QPoint globalPlace);
  void dropped(QPoint globalPlace);
  std::size_t placeAt(QPoint globalPlace) const;
  int indexOf(const UUID& id) const;

  PageServices& services_;
  /// Outlives the window, which hides what is in it when it goes.
  LiveTiles& live_;
  std::vector<DockWidget> strip_;
  int freePlaces_ = 0;
  std::vector<StripTile*> tiles_;
  FreePlace* freePlace_;
  /// Further ones behind it.
  std::vector<QRectF> freeRects_;
  std::optional<UUID> chosen_;
  /// The tiles are one stop of Tab, at this one.
  StripTile* stop_ = nullptr;
  /// Where the dragged tile would come to stand.
  std::optional<std::size_t> gap_;
};

} // namespace tavrin
