#pragma once

#include <QStringList>

namespace tavrin {

/// "one · two", or with another separator: short facts on one line. From right to left each keeps
/// the order of its own letters and figures, and the line that of the facts (Unicode Standard Annex
/// 9).
QString joinedPieces(const QStringList& pieces, const QString& separator = QStringLiteral(" · "));

/// "one, two" for what is said of something, with the language's own comma; empty ones are left
/// out.
QString joinedFacts(QStringList facts);

} // namespace tavrin
