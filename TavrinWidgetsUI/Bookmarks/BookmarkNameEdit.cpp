#include "TavrinWidgetsUI/Bookmarks/BookmarkNameEdit.h"

#include "TavrinCore/Kinds/Bookmarks/Bookmarks.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QKeyEvent>
#include <utility>

namespace tavrin {

BookmarkNameEdit::BookmarkNameEdit(const QString& name, const QString& prompt, QWidget* parent)
    : QLineEdit(name, parent) {
  setAccessibleName(worded("Name of the link"));
  setPlaceholderText(prompt);
  setMaxLength(static_cast<int>(longestBookmarkTitle));
  selectAll();
}

void BookmarkNameEdit::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape)
    end(std::nullopt);
  else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
    end(text());
  else
    QLineEdit::keyPressEvent(event);
}

void BookmarkNameEdit::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  // Its own menu is no elsewhere.
  if (event->reason() != Qt::PopupFocusReason)
    end(text());
}

void BookmarkNameEdit::end(const std::optional<QString>& name) {
  if (const auto told = std::exchange(onEnd, nullptr))
    told(name);
}

} // namespace tavrin
