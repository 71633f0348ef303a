#include "TavrinSettings/Base/VisibleTick.h"

#include <QDateTime>
#include <QEvent>
#include <QWidget>
#include <utility>

namespace tavrin {
namespace {

/// Milliseconds; a timer may fire this much early.
constexpr int slack = 5;

} // namespace

VisibleTick::VisibleTick(QWidget* widget, std::function<void()> tick)
    : QObject(widget), tick_(std::move(tick)) {
  widget->installEventFilter(this);
}

void VisibleTick::wait() {
  stop();
  const auto over = static_cast<int>(QDateTime::currentMSecsSinceEpoch() % 1000);
  timer_ = startTimer(1000 - over + slack, Qt::PreciseTimer);
}

void VisibleTick::stop() {
  if (timer_ != 0)
    killTimer(std::exchange(timer_, 0));
}

bool VisibleTick::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::Show) {
    // What passed meanwhile shows at once.
    tick_();
    wait();
  } else if (event->type() == QEvent::Hide) {
    stop();
  }
  return false;
}

void VisibleTick::timerEvent(QTimerEvent*) {
  tick_();
  wait();
}

} // namespace tavrin
