#pragma once

#include <QLineEdit>
#include <functional>

namespace tavrin {

/// A line of text of which each letter is taken as it is typed; or the whole, once the keyboard
/// leaves it or Return is pressed in it. What does not come from the keyboard is whole already.
class TypedLine final : public QLineEdit {
public:
  enum class Taking { letters, whole };

  explicit TypedLine(Taking taking, QWidget* parent = nullptr);

  /// Shows a text that nobody typed; what was typed and not taken is gone.
  void showText(const QString& text);
  /// Takes what was typed and not taken yet.
  void take();

  /// What stands there is to be taken.
  std::function<void()> onTake;
  /// It is being typed, and taken later.
  std::function<void()> onTyping;

protected:
  void focusOutEvent(QFocusEvent* event) override;
  bool focusNextPrevChild(bool next) override;

private:
  void changed();

  Taking taking_;
  bool isShowing_ = false;
  bool isTyped_ = false;
  bool isWaiting_ = false;
};

} // namespace tavrin
