#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>

namespace tavrin {

class PanelButton;
class PanelText;

/// The line at the window's foot for what there is to be said. It has a place of its own, so that
/// it covers nothing. What is said goes after a while, longer for more words, and at once where
/// something else was done; it stays while the pointer or the keyboard is at it, and where it
/// offers to undo.
class FootLine : public QWidget {
public:
  explicit FootLine(std::function<void()> undo, QWidget* parent = nullptr);

  /// A trouble stands out and stays longer; a mere remark that comes right after it waits.
  void say(const QString& sentence, bool isTrouble);
  /// What was just done, with a button that takes it back, until something else is done or said.
  void offerUndo(const QString& sentence);
  /// What goes on; it stays until something else is said.
  void sayProgress(const QString& sentence);
  /// Something else was done: what was said of the last is over, and an undo would be of this.
  void withdraw();

private:
  void put(const QString& sentence, bool isTrouble, bool isOffer, int milliseconds);
  void goOn();

  PanelText* words_;
  PanelButton* undo_;
  QTimer* ends_;
  bool isTrouble_ = false;
  bool isProgress_ = false;
  QString next_;
};

} // namespace tavrin
