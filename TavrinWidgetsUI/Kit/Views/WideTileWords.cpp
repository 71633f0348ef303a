#include "TavrinWidgetsUI/Kit/Views/WideTileWords.h"

#include <algorithm>

namespace tavrin {

AnyView wideTileWords(const QString& sentence, const QString& least, const QColor& ground,
                      const TileSize& size) {
  const Text words = text(hasRoomForSentence(size) ? sentence : least)
                         .size(size.words(size.span > 2 ? 0.19 : 0.16))
                         .weight(FontWeight::medium)
                         .colour(size.quietInk(ground));
  return firstFitting({words.lines(3).figure(size.words(0)),
                       words.lines(4).spaced(1.1).size(size.words(0.16)).figure(size.words(0)),
                       words.lines(3)});
}

} // namespace tavrin
