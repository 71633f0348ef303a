#pragma once

#include "Tools/Gallery/Gallery.h"

#include <QPainterPath>
#include <vector>

namespace tavrin {

/// A line of text as it stands on a picture.
struct ShownText {
  QString words;
  /// What its letters cover; points from the picture's top left.
  QRectF ink;
  /// Some of its letters lie outside of the room they may be painted on: the tile's body, the part
  /// of the panel they stand in, a button's edge.
  bool isClipped = false;
  /// Of its colour on what it stands on, 1 to 21: of ten letters' dots the worst one.
  double contrast = 21;
  /// Of a control that cannot be used.
  bool isDisabled = false;
};

/// What is looked for; the rest of what is told is as in a text that is whole and black on white.
enum class Wanted { edges, contrast };

/// Of a tile, whose frame is its body's outline.
std::vector<ShownText> shownTexts(const AnyView& tile, const TileSize& size, Wanted wanted);
/// Of a panel that has been laid out. Words that scroll by may be clipped at the list's edge.
std::vector<ShownText> shownTexts(PanelView& panel, Wanted wanted);

} // namespace tavrin
