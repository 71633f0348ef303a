#pragma once

#include "Tools/Gallery/Gallery.h"

#include <QStringList>

namespace tavrin {

/// Words that do not stand whole: painted past the edge of what they stand in, or cut with an
/// ellipsis (told of a few in every language, and of all in the pseudo-language "en@pseudo", in
/// which every text is between brackets and at least 40 % longer). What users wrote themselves may end in an ellipsis, and is not told.
QStringList cutWords(const AnyView& tile, const TileSize& size);
/// Of a panel that has been laid out.
QStringList cutWords(PanelView& panel);

} // namespace tavrin
