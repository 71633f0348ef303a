#include "TavrinSettings/Base/TileDrag.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>

namespace tavrin {

TileDrag::TileDrag(QWidget* window) : QObject(window), window_(window) {}

TileDrag::~TileDrag() {
  qApp->removeEventFilter(this);
}

void TileDrag::begin(DragLoad load, const QPixmap& picture, QPoint grip, QPoint globalPlace) {
  load_ = std::move(load);
  grip_ = grip;
  picture_ = new QLabel(window_);
  picture_->setAttribute(Qt::WA_TransparentForMouseEvents);
  picture_->setPixmap(picture);
  picture_->adjustSize();
  hint_ = new QLabel(window_);
  hint_->setAttribute(Qt::WA_TransparentForMouseEvents);
  hint_->setTextFormat(Qt::PlainText);
  hint_->setContentsMargins(8, 3, 8, 3);
  hint_->setAutoFillBackground(true);
  hint_->setBackgroundRole(QPalette::ToolTipBase);
  hint_->setForegroundRole(QPalette::ToolTipText);
  qApp->installEventFilter(this);
  moveTo(globalPlace);
  picture_->show();
}

void TileDrag::setHint(const QString& hint) {
  if (!hint_)
    return;
  hint_->setText(hint);
  hint_->adjustSize();
  hint_->setVisible(!hint.isEmpty());
}

void TileDrag::moveTo(QPoint globalPlace) {
  if (!isActive())
    return;
  const QPoint place = window_->mapFromGlobal(globalPlace);
  picture_->move(place - grip_);
  picture_->raise();
  if (onMove)
    onMove(globalPlace);
  hint_->move(place + QPoint(14, 18));
  hint_->raise();
}

void TileDrag::drop(QPoint globalPlace) {
  if (!isActive())
    return;
  if (onDrop)
    onDrop(globalPlace);
  end();
}

void TileDrag::cancel() {
  if (isActive())
    end();
}

void TileDrag::end() {
  qApp->removeEventFilter(this);
  load_.reset();
  delete picture_;
  delete hint_;
  if (onEnd)
    onEnd();
}

bool TileDrag::eventFilter(QObject*, QEvent* event) {
  if (event->type() != QEvent::KeyPress || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape)
    return false;
  cancel();
  return true;
}

} // namespace tavrin
