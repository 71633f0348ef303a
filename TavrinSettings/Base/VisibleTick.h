#pragma once

#include <QObject>
#include <functional>

class QWidget;

namespace tavrin {

/// Calls at the beginning of every second while a widget is to be seen.
class VisibleTick : public QObject {
public:
  VisibleTick(QWidget* widget, std::function<void()> tick);

  bool eventFilter(QObject* widget, QEvent* event) override;

protected:
  void timerEvent(QTimerEvent* event) override;

private:
  void wait();
  void stop();

  std::function<void()> tick_;
  int timer_ = 0;
};

} // namespace tavrin
