#include "TavrinWidgetsUI/Emoji/EmojiViews.h"

#include "TavrinCore/Kinds/Emoji/EmojiSettings.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr QColor groundTop{0x41, 0x35, 0x6E};
constexpr QColor groundBottom{0x22, 0x1B, 0x40};
constexpr std::size_t mostOnTile = 24;
/// Pixels a point, so that the pictures stay sharp on dense screens.
constexpr double density = 2;

AnyView picture(const std::string& emoji, EmojiGlyphs& glyphs, double side) {
  return image(glyphs.now(emoji, static_cast<int>(std::lround(side * density)))).frame(side, side);
}

AnyView body(const AnyView& inner, const TileSize& size) {
  return tile(groundTop, inner.fill().background(rectangle().gradient(groundTop, groundBottom)),
              size);
}

} // namespace

std::vector<Emoji> emojiOffer(const std::vector<Emoji>& recents) {
  std::vector<Emoji> offer(recents.begin(), recents.begin() + static_cast<std::ptrdiff_t>(std::min(
                                                                  recents.size(), mostOnTile)));
  for (const Emoji& starter : emojiStarters())
    if (std::ranges::none_of(offer, [&](const Emoji& other) {
          return emojiKey(other.text) == emojiKey(starter.text);
        }))
      offer.push_back(starter);
  return offer;
}

/// Below this side there is room for one emoji.
constexpr double smallestForThree = 56;

AnyView emojiTileIcon(const std::vector<Emoji>& recents, EmojiSkinTone tone, EmojiGlyphs& glyphs,
                      const TileSize& size) {
  const auto offer = emojiOffer(recents);
  const double side = size.body();
  const std::string newest = offer.front().inTone(tone);
  AnyView inner;
  if (size.side >= smallestForThree) {
    const double small = side * 0.27;
    inner = vstack({picture(newest, glyphs, side * 0.5),
                    hstack({picture(offer[1].inTone(tone), glyphs, small),
                            picture(offer[2].inTone(tone), glyphs, small)})
                        .spacing(side * 0.07)})
                .spacing(side * 0.03);
  } else {
    inner = picture(newest, glyphs, side * 0.66);
  }
  return body(inner, size).accessibility(worded("Emoji"), QString::fromStdString(newest));
}

AnyView emojiWideTile(const std::vector<Emoji>& recents, EmojiSkinTone tone, EmojiGlyphs& glyphs,
                      const TileSize& size, const std::function<void(const Emoji&)>& copy) {
  const auto offer = emojiOffer(recents);
  const bool hasTwoRows = size.side >= 80;
  const double room = size.bodyWidth() - 2 * size.padding();
  const double cell = hasTwoRows ? (size.body() - 2 * size.padding()) / 2 : size.body() * 0.62;
  const auto columns = static_cast<std::size_t>(std::max(room / cell, 1.0));
  std::vector<AnyView> rows;
  std::size_t next = 0;
  for (int row = 0; row < (hasTwoRows ? 2 : 1); ++row) {
    std::vector<AnyView> cells;
    for (std::size_t i = 0; i < columns && next < offer.size(); ++i, ++next) {
      const Emoji& emoji = offer[next];
      const std::string text = emoji.inTone(tone);
      cells.push_back(picture(text, glyphs, cell * 0.8)
                          .frame(room / static_cast<double>(columns), cell)
                          .button({"copy " + text, [copy, emoji] { copy(emoji); }},
                                  worded("Copy {emoji}", {{"emoji", text}})));
    }
    if (!cells.empty())
      rows.push_back(hstack(std::move(cells)).fillWidth());
  }
  return called(body(vstack(std::move(rows)).align(Alignment::leading).width(room), size),
                worded("Emoji"), QString::fromStdString(offer.front().inTone(tone)));
}

} // namespace tavrin
