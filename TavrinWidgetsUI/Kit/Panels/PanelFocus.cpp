#include "TavrinWidgetsUI/Kit/Panels/PanelFocus.h"

#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QEvent>
#include <QFocusFrame>
#include <QLineEdit>
#include <QWidget>

namespace tavrin {

namespace {

// These show the focus by their own edge, or by their current row.
bool showsItself(const QWidget* widget) {
  return qobject_cast<const QAbstractScrollArea*>(widget) ||
         qobject_cast<const QLineEdit*>(widget) || dynamic_cast<const ViewWidget*>(widget);
}

} // namespace

PanelFocus::PanelFocus(QWidget* panel) : QObject(panel), panel_(panel) {
  panel->installEventFilter(this);
}

PanelFocus::~PanelFocus() {
  delete ring_.data();
}

void PanelFocus::watch(bool on) {
  if (on == watching_)
    return;
  watching_ = on;
  if (on)
    qApp->installEventFilter(this);
  else
    qApp->removeEventFilter(this);
}

bool PanelFocus::eventFilter(QObject* object, QEvent* event) {
  switch (event->type()) {
  case QEvent::Show:
  case QEvent::Hide:
    if (object == panel_)
      watch(event->type() == QEvent::Show);
    break;
  case QEvent::KeyPress:
    if (object->isWidgetType() && panel_->isAncestorOf(static_cast<QWidget*>(object)))
      keyboardWasUsed(true);
    break;
  case QEvent::MouseButtonPress:
    if (object->isWidgetType() && panel_->isAncestorOf(static_cast<QWidget*>(object)))
      keyboardWasUsed(false);
    break;
  case QEvent::FocusIn:
  case QEvent::FocusOut:
    if (object->isWidgetType() && panel_->isAncestorOf(static_cast<QWidget*>(object)))
      follow();
    break;
  default:
    break;
  }
  return false;
}

void PanelFocus::keyboardWasUsed(bool keyboard) {
  if (panel_->window()->testAttribute(Qt::WA_KeyboardFocusChange) == keyboard)
    return;
  panel_->window()->setAttribute(Qt::WA_KeyboardFocusChange, keyboard);
  follow();
}

void PanelFocus::follow() {
  QWidget* focus = panel_->window()->focusWidget();
  const bool keyboard = panel_->window()->testAttribute(Qt::WA_KeyboardFocusChange);
  if (focus && focus->hasFocus())
    focus->update();
  const bool shown =
      keyboard && focus && focus->hasFocus() && panel_->isAncestorOf(focus) && !showsItself(focus);
  if (shown && !ring_)
    ring_ = new QFocusFrame(panel_);
  if (ring_)
    ring_->setWidget(shown ? focus : nullptr);
}

} // namespace tavrin
