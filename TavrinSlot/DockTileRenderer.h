#pragma once

#include "TavrinPlatform/DockTile.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"

#include <functional>

namespace tavrin {

/// Draws views into the process's Dock tile. The tile never redraws itself: every change a widget
/// wants to show comes through another `render`.
class DockTileRenderer {
public:
  explicit DockTileRenderer(DockTile& tile);
  ~DockTileRenderer();
  DockTileRenderer(const DockTileRenderer&) = delete;
  DockTileRenderer& operator=(const DockTileRenderer&) = delete;

  /// The size that the next view is to be made for.
  TileSize size() const;

  /// Makes `view` the tile's root view and displays it. A view equal to the last one costs nothing.
  void render(const AnyView& view);

  /// The tile has another size, span or scale: make the view again and render it.
  std::function<void()> onFormatChange;

private:
  bool click(QPointF point);

  DockTile& tile_;
  ViewRenderer renderer_;
};

} // namespace tavrin
