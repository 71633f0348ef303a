#pragma once

#include "Tools/Gallery/Gallery.h"

#include <QStringList>

namespace tavrin {

/// Words that do not stand whole: painted past the edge of what they stand in, or (told only in the
/// pseudo-language "en@pseudo", in which every text is between brackets and at least 40 % longer)
/// cut with an ellipsis. What users wrote themselves may end in an ellipsis, and is not told.
QStringList cutWords(const AnyView& tile, const TileSize& size);
/// Of a panel that has been laid out.
QStringList cutWords(PanelView& panel);

} // namespace tavrin
