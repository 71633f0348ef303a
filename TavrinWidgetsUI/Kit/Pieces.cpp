#include "TavrinWidgetsUI/Kit/Pieces.h"

#include "TavrinCore/Text/ForeignText.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinWidgetsUI/Kit/Words.h"

namespace tavrin {

QString joinedPieces(const QStringList& pieces, const QString& separator) {
  if (!isRightToLeft())
    return pieces.join(separator);
  QStringList apart;
  for (const QString& piece : pieces)
    apart << QString::fromStdString(isolated(piece.toStdString()));
  // A line whose first letter is Latin would run the other way.
  constexpr QChar rightToLeftMark(0x200F);
  return rightToLeftMark + apart.join(separator);
}

QString joinedFacts(QStringList facts) {
  facts.removeAll(QString());
  return joinedPieces(facts, wordedIn("between facts", ", "));
}

} // namespace tavrin
