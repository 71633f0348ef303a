#pragma once

#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

namespace tavrin {

/// Whether words of a wide tile may be a sentence or a number with its unit: two places of a Dock
/// below S = 48 have room for two short words.
inline bool hasRoomForSentence(const TileSize& size) {
  return size.span > 2 || size.hasCaption();
}

/// A wide tile's middle in a state without figure: `sentence`, or `least` where there is no room
/// for it, words of at most nine letters or so.
AnyView wideTileWords(const QString& sentence, const QString& least, const QColor& ground,
                      const TileSize& size);

} // namespace tavrin
