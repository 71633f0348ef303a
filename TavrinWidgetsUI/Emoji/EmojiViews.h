#pragma once

#include "TavrinCore/Kinds/Emoji/EmojiHistory.h"
#include "TavrinCore/Kinds/Emoji/EmojiSettings.h"
#include "TavrinWidgetsUI/Emoji/EmojiGlyphs.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <functional>

namespace tavrin {

inline constexpr QColor emojiTint{0xFF, 0xC8, 0x3D};

/// What a tile shows: the recents, filled up with what everybody uses.
std::vector<Emoji> emojiOffer(const std::vector<Emoji>& recents);

/// The emoji used last, large, with the next ones on a larger tile.
AnyView emojiTileIcon(const std::vector<Emoji>& recents, EmojiSkinTone tone, EmojiGlyphs& glyphs,
                      const TileSize& size);
/// As many as there is room for; a click on one copies it.
AnyView emojiWideTile(const std::vector<Emoji>& recents, EmojiSkinTone tone, EmojiGlyphs& glyphs,
                      const TileSize& size, const std::function<void(const Emoji&)>& copy);

} // namespace tavrin
