#pragma once

#include <QString>

namespace tavrin {

/// `words` as tiles and panels show and speak them: nothing in them steers (ForeignText.h), and
/// they are bounded. Every text of the kit goes through here, so a caller may hand over any text.
QString plainWords(const QString& words);

} // namespace tavrin
