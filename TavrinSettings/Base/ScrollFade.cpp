#include "TavrinSettings/Base/ScrollFade.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelPalette.h"

#include <QEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>

namespace tavrin {
namespace {

/// Points; less than a line of text, so that no words are hidden.
constexpr int fadeHeight = 18;

} // namespace

QScrollArea* ScrollFade::makeArea(QWidget* parent) {
  auto* area = new QScrollArea(parent);
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setFocusPolicy(Qt::NoFocus);
  new ScrollFade(area, true);
  new ScrollFade(area, false);
  return area;
}

ScrollFade::ScrollFade(QScrollArea* area, bool isTop) : QWidget(area), area_(area), isTop_(isTop) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  area->viewport()->installEventFilter(this);
  const auto* bar = area->verticalScrollBar();
  connect(bar, &QScrollBar::valueChanged, this, [this] { place(); });
  connect(bar, &QScrollBar::rangeChanged, this, [this] { place(); });
  place();
}

void ScrollFade::place() {
  const auto* bar = area_->verticalScrollBar();
  const QRect shown = area_->viewport()->geometry();
  setGeometry(shown.left(), isTop_ ? shown.top() : shown.bottom() + 1 - fadeHeight, shown.width(),
              fadeHeight);
  setVisible(isTop_ ? bar->value() > bar->minimum() : bar->value() < bar->maximum());
  raise();
}

bool ScrollFade::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::Resize || event->type() == QEvent::Move)
    place();
  return false;
}

void ScrollFade::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QColor ground = PanelPalette::from(palette()).ground;
  QColor clear = ground;
  clear.setAlpha(0);
  QLinearGradient fade(0, 0, 0, height());
  fade.setColorAt(0, isTop_ ? ground : clear);
  fade.setColorAt(1, isTop_ ? clear : ground);
  painter.fillRect(rect(), fade);
}

} // namespace tavrin
