#include "TavrinWidgetsUI/Kit/Views/PlainWords.h"

#include "TavrinCore/Text/ForeignText.h"

#include <algorithm>

namespace tavrin {

QString plainWords(const QString& words) {
  // Nearly every text has none of the ranges in which a steering character can stand.
  const auto isHarmless = [](QChar unit) {
    const char16_t u = unit.unicode();
    return (u >= 0x20 && u < 0x7F) || (u >= 0xA0 && u < 0x0600) || (u >= 0x0700 && u < 0x2000) ||
           (u >= 0x2070 && u < 0xD800) || u == u'\n' || u == u'…' || u == u'–' || u == u'•' ||
           u == u'’';
  };
  if (words.size() <= static_cast<qsizetype>(longestShown) &&
      std::all_of(words.begin(), words.end(), isHarmless))
    return words;
  // No more is turned into bytes than can be shown: two units make one character at the most.
  constexpr auto most = static_cast<qsizetype>(2 * longestShown + 2);
  return QString::fromStdString(plainText(words.left(most).toStdString()));
}

} // namespace tavrin
