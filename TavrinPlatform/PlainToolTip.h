#pragma once

#include "TavrinCore/Text/ForeignText.h"

#include <QPoint>
#include <QRect>
#include <QString>
#include <QTextDocument>
#include <QToolTip>

class QWidget;

namespace tavrin {

/// `words` as the toolkit's tooltips show them letter by letter. They guess by the first line
/// whether a text is HTML, and a guess would fetch what "<img src=…>" names.
inline QString toolTipText(const QString& words) {
  constexpr std::size_t longest = 1000;
  const QString plain = QString::fromStdString(plainText(words.toStdString(), longest));
  return plain.contains(u'<') || Qt::mightBeRichText(plain)
             ? Qt::convertFromPlainText(plain, Qt::WhiteSpaceNormal)
             : plain;
}

/// The one way to show a tooltip at a place of the screen. `words` may come from anywhere.
inline void showPlainToolTip(const QPoint& place, const QString& words, QWidget* widget = nullptr,
                             const QRect& rect = {}) {
  QToolTip::showText(place, toolTipText(words), widget, rect);
}

} // namespace tavrin
