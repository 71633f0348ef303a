#include "TavrinWidgetsUI/Kit/Views/WideTileWords.h"

#include <algorithm>

namespace tavrin {

AnyView wideTileWords(const QString& sentence, const QString& least, const QColor& ground,
                      const TileSize& size) {
  return text(hasRoomForSentence(size) ? sentence : least)
      .size(std::max(size.body() * (size.span > 2 ? 0.19 : 0.16), minimumTypeSize))
      .weight(FontWeight::medium)
      .colour(palette::caption(ground))
      .lines(3);
}

} // namespace tavrin
