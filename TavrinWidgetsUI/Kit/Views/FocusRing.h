#pragma once

class QColor;
class QPainter;
class QRectF;
class QWidget;

namespace tavrin {

/// In points.
inline constexpr int focusRingWidth = 2;

/// Whether the focus is to be seen: `widget` has it, and the keyboard was used last.
bool showsFocus(const QWidget& widget);

/// The ring around what has the keyboard: inside `rect`, which has round corners.
void drawFocusRing(QPainter& painter, const QRectF& rect, double radius, const QColor& accent);

} // namespace tavrin
