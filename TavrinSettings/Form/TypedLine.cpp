#include "TavrinSettings/Form/TypedLine.h"

#include <algorithm>
#include <utility>

namespace tavrin {

TypedLine::TypedLine(Taking taking, QWidget* parent) : QLineEdit(parent), taking_(taking) {
  // It comes before the other signal, and only for what is typed: assistive technology and the
  // program set the text.
  connect(this, &QLineEdit::textEdited, this, [this] { isTyped_ = true; });
  connect(this, &QLineEdit::textChanged, this, [this] { changed(); });
  connect(this, &QLineEdit::returnPressed, this, [this] { take(); });
}

void TypedLine::changed() {
  const bool isTyped = std::exchange(isTyped_, false);
  if (isShowing_)
    return;
  isWaiting_ = true;
  if (taking_ == Taking::letters || !isTyped || !hasFocus())
    take();
  else if (onTyping)
    onTyping();
}

void TypedLine::showText(const QString& shown) {
  isWaiting_ = false;
  if (text() == shown)
    return;
  const int cursor = cursorPosition();
  isShowing_ = true;
  setText(shown);
  isShowing_ = false;
  setCursorPosition(std::min(cursor, static_cast<int>(shown.size())));
}

void TypedLine::take() {
  if (std::exchange(isWaiting_, false) && onTake)
    onTake();
}

void TypedLine::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  take();
}

/// What is taken may let the keyboard go to another place.
bool TypedLine::focusNextPrevChild(bool next) {
  take();
  return QLineEdit::focusNextPrevChild(next);
}

} // namespace tavrin
