#pragma once

#include "TavrinCore/Kinds/Clipboard/ClipboardBoard.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

namespace tavrin {

inline constexpr QColor clipboardTint{0x5E, 0x8C, 0xFF};

/// What the tile tells of the history.
struct ClipboardReading {
  std::size_t count = 0;
  int unseen = 0;
  bool hasRead = true;
  bool hasTrouble = false;
  /// The newest item's line, where the tile is to show it; dots for a sensitive one.
  std::optional<std::string> preview = {};
};

/// A sheet on a clip board with the number of items, and the unseen ones in a badge.
AnyView clipboardTileIcon(const ClipboardReading& reading, const TileSize& size);

/// The line that stands for an item: dots for a sensitive one, unless it is to be shown.
QString clipboardLine(const ClipboardItem& item, bool isRevealed);
/// The item as a row, but for its picture.
PanelRow clipboardRow(const ClipboardItem& item, bool isRevealed, const QString& time);

} // namespace tavrin
