#pragma once

#include "Tools/Gallery/Gallery.h"

#include <QStringList>

namespace tavrin {

/// Words of the pseudo-language (language "en@pseudo", in which every text is between brackets and
/// at least 40 % longer) that do not stand whole: cut with an ellipsis, or painted past the edge of
/// what they stand in. What users wrote themselves may be cut, and is not told.
QStringList cutWords(const AnyView& tile, const TileSize& size);
/// Of a panel that has been laid out.
QStringList cutWords(PanelView& panel);

} // namespace tavrin
