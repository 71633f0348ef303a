#pragma once

#include "TavrinPlatform/Clock.h"
#include "TavrinSettings/Samples/SampleTiles.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"

#include <QPointF>

class QPainter;

namespace tavrin {

/// Draws the tiles of one window, and keeps what that takes.
class TileStage {
public:
  TileStage(RunLoop& runLoop, Clock& clock) : tiles_(runLoop), clock_(clock) {}

  SampleTiles& tiles() { return tiles_; }
  /// The tile as it is now: another one than before is to be painted.
  AnyView view(const DockWidget& widget, const TileSize& size) {
    return tiles_.tile(widget, size, clock_.now());
  }
  /// The tile with its top left corner at `place`, in points.
  void paint(QPainter& painter, const DockWidget& widget, const TileSize& size, QPointF place);

  /// An empty tile.
  void paintBody(QPainter& painter, const TileSize& size);
  /// The tile of a widget of which nothing is known yet.
  void paintWaiting(QPainter& painter, const DockWidget& widget, const TileSize& size);

private:
  void paint(QPainter& painter, const AnyView& view, const TileSize& size, QPointF place);

  SampleTiles tiles_;
  Clock& clock_;
  ViewPainter painter_;
};

/// A ground such as a desktop's picture, on which tiles stand out; with round corners.
void paintDesktopGround(QPainter& painter, const QRectF& rect, bool isDark);

} // namespace tavrin
