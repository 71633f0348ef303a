#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <functional>

namespace tavrin {

/// A check box drawn as a switch: label at the left, switch at the right end.
class PanelSwitch : public QCheckBox {
public:
  explicit PanelSwitch(const QString& title, QWidget* parent = nullptr);
  /// Sets without calling `onChange`.
  void setOn(bool on);
  bool isOn() const { return isChecked(); }

  /// The user switched it.
  std::function<void(bool on)> onChange;

protected:
  bool hitButton(const QPoint& position) const override { return rect().contains(position); }
};

/// A whole number with a minus and a plus, typed or stepped.
class PanelStepper : public QSpinBox {
public:
  /// `name` is the accessible name; `format` holds the number as "%lld", such as "%lld min".
  PanelStepper(const QString& name, const QString& format, int minimum, int maximum,
               QWidget* parent = nullptr);
  /// Sets without calling `onChange`.
  void setNumber(int number);

  std::function<void(int value)> onChange;
};

/// A line to search in, with a magnifier and a clear button. Escape clears a text first; the next
/// Escape is the popover's. Down goes to the list below, if one was named.
class PanelSearchField : public QLineEdit {
public:
  explicit PanelSearchField(const QString& prompt, QWidget* parent = nullptr);
  /// Where Down and Return lead: while the field has the focus, the first of `list` is marked.
  void setList(QWidget* list);
  /// Something else is what undoing means from now on: what was typed stays and is no step of it.
  void forgetTyping() { setText(text()); }
  /// Empties it, with nothing of it to undo.
  void reset() { setText({}); }

  std::function<void(const QString& text)> onChange;
  /// Return was pressed; without it, Return goes on to the panel's prominent button.
  std::function<void()> onReturn;

protected:
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

private:
  void placeClearButton();
  void updateList();

  QWidget* list_ = nullptr;
  QWidget* clear_ = nullptr;
};

/// Several lines of plain text. Tab moves on.
class PanelTextEdit : public QPlainTextEdit {
public:
  /// `name` is the accessible name, `prompt` what an empty one shows.
  PanelTextEdit(const QString& name, const QString& prompt, QWidget* parent = nullptr);
  /// Sets without calling `onChange`; keeps the cursor where the text is the same.
  void setText(const QString& text);
  /// Paper of this colour with faint ruled lines; the text keeps its contrast on it.
  void setPaper(const QColor& colour);
  /// Height in lines of text; 6 at first.
  void setLines(int lines);

  std::function<void(const QString& text)> onChange;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

private:
  void applyPaper();
  void paintPrompt();

  QString prompt_;
  QColor paper_;
  int lines_ = 6;
};

/// A label at the left and a control at the right; the label names the control.
class PanelField : public QWidget {
public:
  PanelField(const QString& title, QWidget* control, QWidget* parent = nullptr);
};

/// Names a choice that stands beside others without a label. On Unix Qt tells the chosen words as a
/// choice's name, and what it is for by its label alone: it gets one that is not seen.
void nameChoice(QComboBox& choice, const QString& name);

} // namespace tavrin
