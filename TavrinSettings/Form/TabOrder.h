#pragma once

#include <QAbstractButton>

namespace tavrin {

/// Tab leads from `before` into `group`, whose parts may have been made later than what follows
/// them on the screen, and from there to what came after `before`.
inline void followInTabOrder(QWidget& before, const QWidget& group) {
  QList<QWidget*> parts;
  for (QWidget* one = before.nextInFocusChain(); one != &before; one = one->nextInFocusChain()) {
    // Of buttons of which one is chosen, the others are no stops yet.
    const bool isStop =
        one->focusPolicy() != Qt::NoFocus || qobject_cast<QAbstractButton*>(one) != nullptr;
    if (isStop && (one == &group || group.isAncestorOf(one)))
      parts.append(one);
  }
  QWidget* last = &before;
  for (QWidget* one : std::as_const(parts)) {
    QWidget::setTabOrder(last, one);
    last = one;
  }
}

} // namespace tavrin
