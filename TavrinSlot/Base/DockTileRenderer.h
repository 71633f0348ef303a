#pragma once

#include "TavrinPlatform/DockTile.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"

#include <functional>
#include <optional>
#include <string>

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

  /// Whose the views are that are rendered from now on, for those who watch the tile from
  /// elsewhere.
  void setSubject(const std::string& subject);
  /// Makes `view` the tile's root view and displays it. A view equal to the last one of the same
  /// subject costs nothing.
  void render(const AnyView& view);

  /// The tile has another size, span or scale: make the view again and render it.
  std::function<void()> onFormatChange;

private:
  bool click(QPointF point);
  QImage picture(int pixelsHigh) const;

  DockTile& tile_;
  ViewRenderer renderer_;
  std::optional<AnyView> view_;
  std::string subject_;
  bool isOfAnother_ = false;
};

} // namespace tavrin
