#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"

#include "TavrinPlatform/PlainToolTip.h"
#include "TavrinWidgetsUI/Kit/Views/PlainWords.h"

#include <QCoreApplication>
#include <QHelpEvent>
#include <QVariant>
#include <QWidget>

namespace tavrin {

namespace {

constexpr const char* wordsProperty = "tavrin.toolTip";

/// Not the toolkit's own tooltip: that one is read out as the description, whatever the name is.
class ToolTips : public QObject {
public:
  using QObject::QObject;
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() != QEvent::ToolTip)
      return false;
    auto* widget = static_cast<QWidget*>(object);
    showPlainToolTip(static_cast<QHelpEvent*>(event)->globalPos(), plainToolTip(widget), widget);
    return true;
  }
};

} // namespace

void setPlainToolTip(QWidget* widget, const QString& words) {
  const QString before = plainToolTip(widget);
  if (words == before)
    return;
  static QObject* const toolTips = new ToolTips(QCoreApplication::instance());
  widget->setProperty(wordsProperty, words);
  widget->removeEventFilter(toolTips);
  widget->installEventFilter(toolTips);
  const QString plain = plainWords(words);
  if (widget->accessibleDescription().isEmpty() ||
      widget->accessibleDescription() == plainWords(before)) {
    const bool isName =
        widget->accessibleName() == plain || widget->property("text").toString() == plain;
    widget->setAccessibleDescription(isName ? QString() : plain);
  }
}

QString plainToolTip(const QWidget* widget) {
  return widget->property(wordsProperty).toString();
}

} // namespace tavrin
