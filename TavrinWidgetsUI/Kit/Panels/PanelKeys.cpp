#include "TavrinWidgetsUI/Kit/Panels/PanelKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QWidget>

namespace tavrin {

namespace {

class ArrowKeys : public QObject {
public:
  ArrowKeys(QWidget& from, QWidget& to) : QObject(&from), to_(&to) { from.installEventFilter(this); }

  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::KeyPress || to_ == nullptr || !to_->isVisible() ||
        !to_->isEnabled())
      return false;
    const auto* press = static_cast<QKeyEvent*>(event);
    if (press->modifiers() != Qt::NoModifier ||
        (press->key() != Qt::Key_Left && press->key() != Qt::Key_Right))
      return false;
    QCoreApplication::sendEvent(to_, event);
    return true;
  }

private:
  QPointer<QWidget> to_;
};

} // namespace

void passArrowKeys(QWidget& from, QWidget& to) {
  new ArrowKeys(from, to);
}

} // namespace tavrin
