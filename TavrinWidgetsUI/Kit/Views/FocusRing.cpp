#include "TavrinWidgetsUI/Kit/Views/FocusRing.h"

#include <QPainter>
#include <QWidget>

namespace tavrin {

bool showsFocus(const QWidget& widget) {
  return widget.hasFocus() && widget.window()->testAttribute(Qt::WA_KeyboardFocusChange);
}

void drawFocusRing(QPainter& painter, const QRectF& rect, double radius, const QColor& accent) {
  constexpr double half = focusRingWidth / 2.0;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(accent, focusRingWidth));
  painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), radius - half, radius - half);
}

} // namespace tavrin
