#include "TavrinWidgetsUI/Kit/Views/WideTileWords.h"

#include <algorithm>

namespace tavrin {

AnyView wideTileWords(const QString& sentence, const QString& least, const QColor& ground,
                      const TileSize& size) {
  return text(hasRoomForSentence(size) ? sentence : least)
      .size(size.words(size.span > 2 ? 0.19 : 0.16))
      .weight(FontWeight::medium)
      .colour(size.quietInk(ground))
      .lines(3);
}

} // namespace tavrin
