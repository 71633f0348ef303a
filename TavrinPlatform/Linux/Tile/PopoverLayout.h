#pragma once

#include <QPainterPath>
#include <QRectF>

namespace tavrin {

/// The shape of a panel's window: a rounded body and an arrow. Toolkit points, y downwards.
struct PopoverLayout {
  /// The side of the body that the arrow is on.
  enum class Arrow { bottom, top, left, right };

  static constexpr double arrowWidth = 18;
  static constexpr double arrowLength = 9;
  static constexpr double corner = 12;

  QRectF body;
  QPointF tip;
  Arrow arrow = Arrow::bottom;

  /// The body and its arrow as one outline.
  QPainterPath outline() const;
  QRectF frame() const { return outline().boundingRect(); }

  /// Puts a body of `size` beside `tip`, on the side opposite to `arrow`, whole within
  /// `available`. Where there is no room for it there, but there is at the other side, it goes
  /// to the other side. A tip outside of `available` is moved to its edge.
  static PopoverLayout make(QPointF tip, Arrow arrow, QSizeF size, const QRectF& available);
};

} // namespace tavrin
