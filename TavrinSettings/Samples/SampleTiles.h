#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Dock/DockItem.h"
#include "TavrinCore/Kinds/Converter/NumberNotation.h"
#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinPlatform/RunLoop.h"
#include "TavrinWidgetsUI/Collection/CollectionViews.h"
#include "TavrinWidgetsUI/Emoji/EmojiGlyphs.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <functional>

namespace tavrin {

/// Tiles as the slots draw them, made from a widget's record alone: what the record says stands as
/// it is, and what a kind reads from the computer or the network has a sample in its place. Equal
/// records give equal tiles but for what follows the time. A widget without an identifier stands
/// for its kind: where its lists are empty it has samples in them.
class SampleTiles {
public:
  explicit SampleTiles(RunLoop& runLoop) : glyphs_(runLoop) {}

  AnyView tile(const DockWidget& widget, const TileSize& size, Date now);

  /// An application of the user's, its icon `side` points large. Without it icons are samples.
  std::function<CollectionTileApp(const AppEntry& app, int side)> application;

private:
  Calendar calendar_;
  NumberNotation notation_;
  EmojiGlyphs glyphs_;
};

/// A kind's symbol alone: where there are no samples of it, or nothing is known yet.
AnyView symbolTile(const DockWidget::Kind& kind, const TileSize& size, TileState state);

/// Whether the tile follows the time, so that it is to be drawn again every second.
bool followsTime(const DockWidget::Kind& kind);

} // namespace tavrin
