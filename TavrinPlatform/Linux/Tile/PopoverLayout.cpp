#include "TavrinPlatform/Linux/Tile/PopoverLayout.h"

#include <algorithm>

namespace tavrin {

namespace {

using Arrow = PopoverLayout::Arrow;

bool isUpright(Arrow arrow) {
  return arrow == Arrow::bottom || arrow == Arrow::top;
}

Arrow opposite(Arrow arrow) {
  switch (arrow) {
  case Arrow::bottom:
    return Arrow::top;
  case Arrow::top:
    return Arrow::bottom;
  case Arrow::left:
    return Arrow::right;
  case Arrow::right:
    return Arrow::left;
  }
  return arrow;
}

QRectF bodyBeside(QPointF tip, Arrow arrow, QSizeF size) {
  QRectF body(QPointF(), size);
  body.moveCenter(tip);
  switch (arrow) {
  case Arrow::bottom:
    body.moveBottom(tip.y() - PopoverLayout::arrowLength);
    break;
  case Arrow::top:
    body.moveTop(tip.y() + PopoverLayout::arrowLength);
    break;
  case Arrow::left:
    body.moveLeft(tip.x() + PopoverLayout::arrowLength);
    break;
  case Arrow::right:
    body.moveRight(tip.x() - PopoverLayout::arrowLength);
    break;
  }
  return body;
}

bool fitsAcross(const QRectF& body, Arrow arrow, const QRectF& available) {
  return isUpright(arrow) ? body.top() >= available.top() && body.bottom() <= available.bottom()
                          : body.left() >= available.left() && body.right() <= available.right();
}

/// The start of a stretch of `length` nearest to `start` that lies within the bounds; of one
/// that is too long the beginning is kept.
double kept(double start, double length, double lower, double upper) {
  return std::max(std::min(start, upper - length), lower);
}

QPainterPath arrowPath(const PopoverLayout& layout) {
  const double half = PopoverLayout::arrowWidth / 2;
  const double reach = half + PopoverLayout::corner;
  const QRectF& body = layout.body;
  QPointF along(1, 0);
  QPointF base;
  if (isUpright(layout.arrow)) {
    const double x = std::clamp(layout.tip.x(), body.left() + reach,
                                std::max(body.right() - reach, body.left() + reach));
    base = {x, layout.arrow == Arrow::bottom ? body.bottom() : body.top()};
  } else {
    const double y = std::clamp(layout.tip.y(), body.top() + reach,
                                std::max(body.bottom() - reach, body.top() + reach));
    along = {0, 1};
    base = {layout.arrow == Arrow::right ? body.right() : body.left(), y};
  }
  // A base one point inside the body, so that the two outlines become one.
  const double outwards =
      layout.arrow == Arrow::bottom || layout.arrow == Arrow::right ? 1.0 : -1.0;
  const QPointF out = isUpright(layout.arrow) ? QPointF(0, outwards) : QPointF(outwards, 0);
  QPainterPath path(base - along * half - out);
  path.lineTo(base - along * half);
  path.lineTo(base + out * PopoverLayout::arrowLength);
  path.lineTo(base + along * half);
  path.lineTo(base + along * half - out);
  path.closeSubpath();
  return path;
}

} // namespace

PopoverLayout::Arrow PopoverLayout::arrowAt(RectEdge edge) {
  switch (edge) {
  case RectEdge::maxY:
    return Arrow::bottom;
  case RectEdge::minY:
    return Arrow::top;
  case RectEdge::maxX:
    return Arrow::left;
  case RectEdge::minX:
    return Arrow::right;
  }
  return Arrow::bottom;
}

QRectF PopoverLayout::roomBeside(const QRectF& strip, Arrow arrow, QRectF room) {
  if (!strip.intersects(room))
    return room;
  switch (arrow) {
  case Arrow::bottom:
    room.setBottom(strip.top());
    break;
  case Arrow::top:
    room.setTop(strip.bottom());
    break;
  case Arrow::left:
    room.setLeft(strip.right());
    break;
  case Arrow::right:
    room.setRight(strip.left());
    break;
  }
  return room;
}

QPainterPath PopoverLayout::outline() const {
  QPainterPath path;
  path.addRoundedRect(body, corner, corner);
  return path.united(arrowPath(*this));
}

PopoverLayout PopoverLayout::make(QPointF tip, Arrow arrow, QSizeF size, const QRectF& room,
                                  double margin) {
  PopoverLayout layout;
  const QRectF available = room.adjusted(margin, margin, -margin, -margin);
  tip.setX(std::clamp(tip.x(), room.left(), room.right()));
  tip.setY(std::clamp(tip.y(), room.top(), room.bottom()));
  layout.tip = tip;
  layout.arrow = arrow;
  layout.body = bodyBeside(tip, arrow, size);
  if (!fitsAcross(layout.body, arrow, available)) {
    const QRectF other = bodyBeside(tip, opposite(arrow), size);
    if (fitsAcross(other, arrow, available)) {
      layout.arrow = opposite(arrow);
      layout.body = other;
    }
  }
  layout.body.moveLeft(kept(layout.body.left(), size.width(), available.left(), available.right()));
  layout.body.moveTop(kept(layout.body.top(), size.height(), available.top(), available.bottom()));
  // Where its content stands.
  layout.body.moveTopLeft(layout.body.topLeft().toPoint());
  return layout;
}

} // namespace tavrin
