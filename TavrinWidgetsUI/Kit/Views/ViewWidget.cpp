#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"

#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Views/FocusRing.h"
#include "TavrinWidgetsUI/Kit/Views/PlainWords.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"

#include <QFocusEvent>
#include <QMouseEvent>
#include <QPainter>
#include <cmath>

namespace tavrin {

ViewWidget::ViewWidget(QSizeF size, QWidget* parent)
    : QWidget(parent), view_(std::make_unique<AnyView>()),
      painter_(std::make_unique<ViewPainter>()), size_(size) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

ViewWidget::~ViewWidget() = default;

void ViewWidget::setView(const AnyView& view) {
  // Equal views may still differ in what their buttons do.
  const bool same = *view_ == view;
  *view_ = view;
  if (!same || !painter_->buttons().empty())
    update();
}

void ViewWidget::setViewSize(QSizeF size) {
  if (size == size_)
    return;
  size_ = size;
  updateGeometry();
  update();
}

void ViewWidget::setName(const QString& name) {
  isNamed_ = !name.isEmpty();
  setAccessibleName(plainWords(name));
}

QSize ViewWidget::sizeHint() const {
  return {int(std::ceil(size_.width())), int(std::ceil(size_.height()))};
}

QSizeF ViewWidget::measure(const AnyView& view) {
  return painter_->measure(view, {unbounded, unbounded}, devicePixelRatioF());
}

void ViewWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QPointF origin((width() - size_.width()) / 2, (height() - size_.height()) / 2);
  painter_->paint(painter, *view_, QRectF(origin, size_), devicePixelRatioF());
  adoptButtons();
  const auto& buttons = painter_->buttons();
  if (button_ >= 0 && showsFocus(*this))
    drawFocusRing(painter, buttons[static_cast<std::size_t>(button_)].rect, 6,
                  palette().color(QPalette::Active, QPalette::Link));
}

void ViewWidget::adoptButtons() {
  const int count = static_cast<int>(painter_->buttons().size());
  button_ = std::min(button_, count - 1);
  setFocusPolicy(count > 0 ? Qt::TabFocus : Qt::NoFocus);
  setMouseTracking(count > 0);
  if (isNamed_)
    return;
  QStringList words;
  for (const AccessibleElement& element : painter_->elements())
    words << element.label << element.value;
  const QString name = plainWords(joinedFacts(std::move(words)));
  if (name != accessibleName())
    setAccessibleName(name);
}

void ViewWidget::mousePressEvent(QMouseEvent* event) {
  event->setAccepted(painter_->buttonAt(event->position()) != nullptr);
}

void ViewWidget::mouseReleaseEvent(QMouseEvent* event) {
  const ViewAction* action = painter_->buttonAt(event->position());
  if (!action || event->button() != Qt::LeftButton)
    return;
  // A copy: what it does may bring another view.
  if (const auto run = action->run)
    run();
}

void ViewWidget::mouseMoveEvent(QMouseEvent* event) {
  const bool over = painter_->buttonAt(event->position()) != nullptr;
  setCursor(over ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void ViewWidget::focusInEvent(QFocusEvent* event) {
  const int count = static_cast<int>(painter_->buttons().size());
  button_ = event->reason() == Qt::BacktabFocusReason ? count - 1 : std::min(0, count - 1);
  QWidget::focusInEvent(event);
}

bool ViewWidget::focusNextPrevChild(bool next) {
  const int count = static_cast<int>(painter_->buttons().size());
  const int to = button_ + (next ? 1 : -1);
  if (!hasFocus() || to < 0 || to >= count)
    return QWidget::focusNextPrevChild(next);
  button_ = to;
  update();
  return true;
}

void ViewWidget::keyPressEvent(QKeyEvent* event) {
  const bool isPress = event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
                       event->key() == Qt::Key_Enter;
  if (isPress && button_ >= 0)
    press();
  else
    event->ignore();
}

bool ViewWidget::hasButtons() const {
  return !painter_->buttons().empty();
}

void ViewWidget::press() {
  if (!hasButtons())
    return;
  const auto pressed = static_cast<std::size_t>(std::max(button_, 0));
  // A copy, as above.
  if (const auto run = painter_->buttons()[pressed].action.run)
    run();
}

} // namespace tavrin
