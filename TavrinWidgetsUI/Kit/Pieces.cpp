#include "TavrinWidgetsUI/Kit/Pieces.h"

#include "TavrinCore/Text/Texts.h"

namespace tavrin {

QString joinedPieces(const QStringList& pieces, const QString& separator) {
  if (!isRightToLeft())
    return pieces.join(separator);
  QStringList isolated;
  for (const QString& piece : pieces)
    isolated << QChar(0x2068) + piece + QChar(0x2069);
  return QChar(0x200F) + isolated.join(separator);
}

} // namespace tavrin
