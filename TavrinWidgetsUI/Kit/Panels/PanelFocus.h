#pragma once

#include <QObject>
#include <QPointer>

class QFocusFrame;
class QWidget;

namespace tavrin {

/// Shows the ring around what has the focus, from the first key press until the next mouse press.
/// Watches the application's events only while its panel is on the screen.
class PanelFocus : public QObject {
public:
  explicit PanelFocus(QWidget* panel);
  ~PanelFocus() override;

  bool eventFilter(QObject* object, QEvent* event) override;

private:
  void watch(bool on);
  void keyboardWasUsed(bool keyboard);
  void follow();

  QWidget* panel_;
  QPointer<QFocusFrame> ring_;
  bool watching_ = false;
};

} // namespace tavrin
