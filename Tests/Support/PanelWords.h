#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <algorithm>

namespace tavrin::test {

/// Whether a panel has those words among the texts it shows.
inline bool shows(const QWidget& panel, const QString& words) {
  const auto labels = panel.findChildren<QLabel*>();
  return std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) {
    return label->text() == words && !label->isHidden();
  });
}

/// Whether it shows a button of that title.
inline bool offers(const QWidget& panel, const QString& title) {
  const auto buttons = panel.findChildren<QAbstractButton*>();
  return std::any_of(buttons.begin(), buttons.end(), [&](const QAbstractButton* button) {
    return button->text() == title && !button->isHidden();
  });
}

} // namespace tavrin::test
