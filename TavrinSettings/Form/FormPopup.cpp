#include "TavrinSettings/Form/FormPopup.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLayout>
#include <algorithm>

namespace tavrin {
namespace {
/// Points between the popup and its owner, and the window's edge.
constexpr int popupGap = 4;
constexpr double popupRadius = 8;
} // namespace

FormPopup::FormPopup(QWidget* owner, const QString& name)
    : QWidget(owner->window()), owner_(owner) {
  setAttribute(Qt::WA_DeleteOnClose);
  setPalette(owner->palette());
  setAccessibleName(name);
  setFocusPolicy(Qt::ClickFocus);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    if (isVisible() && now != nullptr && now->window() == window() && !holds(now))
      close();
  });
  connect(owner, &QObject::destroyed, this, [this] { deleteLater(); });
}

void FormPopup::open() {
  place();
  show();
  raise();
  qApp->installEventFilter(this);
}

void FormPopup::place() {
  if (layout() != nullptr)
    layout()->activate();
  const QRect room = window()->rect().marginsRemoved({popupGap, popupGap, popupGap, popupGap});
  const QRect anchor(owner_->mapTo(window(), QPoint(0, 0)), owner_->size());
  const int width = std::min(std::max(sizeHint().width(), minimumWidth()), room.width());
  const int wanted = std::clamp(sizeHint().height(), minimumHeight(), maximumHeight());
  const int height = std::min(wanted, room.height());
  const bool isMirrored = layoutDirection() == Qt::RightToLeft;
  // Along the owner's leading edge; along the other one where that would leave the window.
  int x = isMirrored ? anchor.right() + 1 - width : anchor.left();
  if (!isMirrored && x + width > room.right())
    x = anchor.right() + 1 - width;
  if (isMirrored && x < room.left())
    x = anchor.left();
  x = std::clamp(x, room.left(), std::max(room.left(), room.right() + 1 - width));
  const int below = anchor.bottom() + 1 + popupGap;
  const int above = anchor.top() - popupGap - height;
  if (!isAbove_)
    isAbove_ = below + height > room.bottom() + 1 && above >= room.top();
  // Over the owner where neither side has room.
  const int y = *isAbove_ ? std::max(above, room.top())
                          : std::min(below, room.bottom() + 1 - height);
  setGeometry(x, y, width, height);
}

int FormPopup::roomBeside() const {
  const QRect anchor(owner_->mapTo(window(), QPoint(0, 0)), owner_->size());
  return std::max(anchor.top(), window()->height() - anchor.bottom() - 1) - 2 * popupGap;
}

bool FormPopup::holds(const QObject* object) const {
  for (; object != nullptr; object = object->parent())
    if (object == this)
      return true;
  return false;
}

bool FormPopup::eventFilter(QObject* watched, QEvent* event) {
  auto* widget = qobject_cast<QWidget*>(watched);
  if (widget == nullptr || !isVisible() || widget->window() != window() || holds(widget))
    return false;
  switch (event->type()) {
  case QEvent::MouseButtonPress:
  case QEvent::MouseButtonDblClick:
    // A press elsewhere closes, and does nothing else.
    close();
    return true;
  case QEvent::Wheel:
    close();
    return false;
  case QEvent::Resize:
    if (widget == window())
      close();
    return false;
  default:
    return false;
  }
}

void FormPopup::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape)
    close();
  else
    QWidget::keyPressEvent(event);
}

void FormPopup::closeEvent(QCloseEvent* event) {
  qApp->removeEventFilter(this);
  const auto* focus = QApplication::focusWidget();
  if (focus != nullptr && holds(focus))
    owner_->setFocus(Qt::PopupFocusReason);
  QWidget::closeEvent(event);
}

void FormPopup::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const auto colours = PanelPalette::from(palette());
  panelPaint::rounded(painter, rect(), popupRadius, colours.ground, colours.hairline);
}

} // namespace tavrin
