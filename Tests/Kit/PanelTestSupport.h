#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QVBoxLayout>
#include <QWidget>
#include <memory>

namespace tavrin {

/// A panel in a window of its own, as the popover shows it, with a keyboard and a mouse.
class PanelStage {
public:
  template <class Panel> explicit PanelStage(Panel* panel) : panel_(panel) {
    auto* layout = new QVBoxLayout(&window_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(panel);
    panel->onFittingSizeChange = [this] { window_.resize(panel_->fittingSize()); };
    window_.resize(panel->fittingSize());
    window_.show();
    window_.activateWindow();
    QApplication::processEvents();
    window_.resize(panel->fittingSize());
    QApplication::processEvents();
  }

  QWidget& window() { return window_; }

  /// To what has the focus, as a keyboard does.
  void press(Qt::Key key, const QString& text = {}, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* target = QApplication::focusWidget() ? QApplication::focusWidget() : panel_;
    QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(target, &down);
    wasEscapeTaken = down.isAccepted();
    QKeyEvent up(QEvent::KeyRelease, key, modifiers, text);
    QApplication::sendEvent(target, &up);
    QApplication::processEvents();
  }

  void click(QWidget* widget, QPoint at) {
    const QPointF global = widget->mapToGlobal(QPointF(at));
    QMouseEvent down(QEvent::MouseButtonPress, QPointF(at), global, Qt::LeftButton, Qt::LeftButton,
                     {});
    QApplication::sendEvent(widget, &down);
    QMouseEvent up(QEvent::MouseButtonRelease, QPointF(at), global, Qt::LeftButton, {}, {});
    QApplication::sendEvent(widget, &up);
    QApplication::processEvents();
  }
  void click(QWidget* widget) { click(widget, widget->rect().center()); }

  bool wasEscapeTaken = false;

private:
  QWidget window_;
  PanelView* panel_;
};

inline QString spokenName(QWidget* widget) {
  return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
}
inline QAccessible::Role roleOf(QWidget* widget) {
  return QAccessible::queryAccessibleInterface(widget)->role();
}

} // namespace tavrin
