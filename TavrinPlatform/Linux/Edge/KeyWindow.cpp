#include "TavrinPlatform/Linux/Edge/KeyWindow.h"

#include <QKeyEvent>
#include <QPainter>

namespace tavrin {

KeyWindow::KeyWindow(LayerShell& layers, QPoint place) : layers_(layers), store_(this) {
  QSurfaceFormat clear;
  clear.setAlphaBufferSize(8);
  setFormat(clear);
  setFlags(Qt::FramelessWindowHint);
  layers_.put(*this, {QRect(place, QSize(1, 1)), LayerShell::Level::top, true});
}

void KeyWindow::end() {
  layers_.withdraw(*this);
  hide();
  // It may be its own key that ends it.
  deleteLater();
}

void KeyWindow::exposeEvent(QExposeEvent*) {
  if (!isExposed())
    return;
  store_.resize(size());
  const QRect whole(QPoint(), size());
  store_.beginPaint(whole);
  QPainter painter(store_.paintDevice());
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.fillRect(whole, Qt::transparent);
  painter.end();
  store_.endPaint();
  store_.flush(whole);
}

void KeyWindow::keyPressEvent(QKeyEvent* event) {
  onKey(*event);
}

} // namespace tavrin
