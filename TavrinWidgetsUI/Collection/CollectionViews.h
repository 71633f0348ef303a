#pragma once

#include "TavrinCore/Kinds/Collection/CollectionLayout.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <functional>
#include <vector>

namespace tavrin {

inline constexpr QColor collectionTint{0x5A, 0xA9, 0xE6};

/// One application on the tile.
struct CollectionTileApp {
  QString name;
  /// Null where there is none, or not yet.
  QImage icon;
  bool isGone = false;
};

/// How the applications lie on a tile: what of them is shown, and how large.
struct CollectionCells {
  int columns = 1;
  int rows = 1;
  /// Points.
  double side = 0;
  double gap = 0;
  /// Names stand beside the icons.
  bool hasNames = false;

  static CollectionCells of(CollectionLayout layout, int count, const TileSize& size);
  int room() const { return columns * rows; }
};

AnyView collectionTileIcon(const std::vector<CollectionTileApp>& apps, CollectionLayout layout,
                           const TileSize& size, const QString& name);
/// Each application is a button that calls `open` with its number; `add` stands where there is
/// none yet.
AnyView collectionWideTile(const std::vector<CollectionTileApp>& apps, CollectionLayout layout,
                           const TileSize& size, const QString& name,
                           const std::function<void(std::size_t)>& open,
                           const std::function<void()>& add);

/// A picture for an application without one: its first letter on a colour of its own.
AnyView appMonogram(const QString& name, double side);
QImage appMonogramImage(const QString& name, int points, int scale);

} // namespace tavrin
