#pragma once

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

namespace tavrin::test {

/// Presses and releases one key on a widget, as if it had the focus.
inline void pressKey(QWidget* widget, int key, const QString& text = {}) {
  for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(widget, &event);
  }
}

inline void typeText(QWidget* widget, const QString& text) {
  for (const QChar character : text)
    pressKey(widget, 0, character);
}

} // namespace tavrin::test
