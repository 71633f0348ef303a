#include "TavrinPlatform/Qt/QtTextLocale.h"

#include "TavrinCore/Text/SystemLocale.h"
#include "TavrinCore/Text/Texts.h"

#include <QGuiApplication>
#include <QLocale>
#include <cstdlib>

namespace tavrin {
namespace {

bool hasPlainDigits(const QLocale& locale) {
  return locale.zeroDigit() == QLatin1String("0");
}

/// The user's locale for numbers, or one of its language that writes digits as 0 to 9, as all other
/// numbers of the program are written.
QLocale numberLocale() {
  const auto id = systemLocaleID("LC_NUMERIC");
  const QLocale wanted(QString::fromStdString(id.substr(0, id.find('@'))));
  if (hasPlainDigits(wanted))
    return wanted;
  for (const auto& other :
       QLocale::matchingLocales(wanted.language(), QLocale::AnyScript, QLocale::AnyTerritory))
    if (hasPlainDigits(other))
      return other;
  return QLocale::c();
}

} // namespace

void setTextLocale() {
  if (std::getenv("TAVRIN_LANGUAGE") != nullptr || !hasPlainDigits(QLocale()))
    QLocale::setDefault(numberLocale());
  if (isRightToLeft())
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
}

} // namespace tavrin
