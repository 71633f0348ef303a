#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"

#include "TavrinPlatform/PlainToolTip.h"
#include "TavrinWidgetsUI/Kit/Views/PlainWords.h"

#include <QWidget>

namespace tavrin {

void setPlainToolTip(QWidget* widget, const QString& words) {
  const QString before = widget->toolTip();
  const QString tip = toolTipText(words);
  if (tip == before)
    return;
  widget->setToolTip(tip);
  // Where a tooltip is also the description, that one is without the escapes.
  constexpr const char* isOurs = "tavrin.describedByToolTip";
  const QString plain = plainWords(words);
  if (tip != plain || widget->property(isOurs).toBool()) {
    widget->setAccessibleDescription(plain);
    widget->setProperty(isOurs, true);
  }
}

} // namespace tavrin
