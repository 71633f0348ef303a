#pragma once

#include "TavrinPlatform/DockGeometry.h"

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

  /// Of a panel that opens from that edge of what it points at.
  static Arrow arrowAt(RectEdge edge);
  /// What a strip leaves of a screen's `room` to a panel that points at it: some desktops count the
  /// strip's own room in.
  static QRectF roomBeside(const QRectF& strip, Arrow arrow, QRectF room);

  /// Puts a body of `size` beside `tip`, on the side opposite to `arrow`, whole within
  /// `room`. Where there is no room for it there, but there is at the other side, it goes
  /// to the other side. A tip outside of `room` is moved to its edge; the body keeps `margin`
  /// from it, so that the tip stands at a tile and the body off the screen's edges.
  static PopoverLayout make(QPointF tip, Arrow arrow, QSizeF size, const QRectF& room,
                            double margin = 0);
};

} // namespace tavrin
