#include "TavrinWidgetsUI/Kit/Views/Shape.h"

#include "TavrinWidgetsUI/Kit/Pictures/Fill.h"
#include "TavrinWidgetsUI/Kit/Views/BodyOutline.h"
#include "TavrinWidgetsUI/Kit/Views/Colour.h"
#include "TavrinWidgetsUI/Kit/Views/Modifiers.h"
#include "TavrinWidgetsUI/Kit/Views/ViewContext.h"

#include <QLinearGradient>
#include <algorithm>
#include <cmath>

namespace tavrin {

namespace {

QRectF squareIn(const QRectF& rect) {
  const double side = std::min(rect.width(), rect.height());
  return aligned({side, side}, rect, Alignment::centre);
}

QSizeF squareOf(const QSizeF& offer) {
  const double side = std::min(offer.width(), offer.height());
  return {side, side};
}

bool isVisible(const QColor& colour) {
  return colour.isValid() && colour.alpha() > 0;
}

Shape shaped(Shape::Form form, double cornerRadius = 0) {
  Shape result;
  result.form = form;
  result.cornerRadius = cornerRadius;
  return result;
}

template <class Gauge> Gauge gauge(double progress) {
  Gauge result;
  result.progress = progress;
  result.tintColour = palette::blue;
  result.trackColour = palette::track;
  return result;
}

QBrush fillOf(const Shape& shape, const QRectF& rect) {
  if (!shape.fillEndColour.isValid())
    return shape.fillColour;
  QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
  gradient.setColorAt(0, shape.fillColour);
  gradient.setColorAt(1, shape.fillEndColour);
  return gradient;
}

} // namespace

QPainterPath superellipsePath(const QRectF& rect, double radius) {
  QPainterPath path;
  path.addPolygon(BodyOutline(rect, radius).polygon());
  path.closeSubpath();
  return path;
}

Shape Shape::fill(const QColor& colour) const {
  Shape result = *this;
  result.fillColour = colour;
  result.fillEndColour = QColor();
  return result;
}

Shape Shape::gradient(const QColor& top, const QColor& bottom) const {
  Shape result = *this;
  result.fillColour = top;
  result.fillEndColour = bottom;
  return result;
}

Shape Shape::stroke(const QColor& colour, double width) const {
  Shape result = *this;
  result.strokeColour = colour;
  result.strokeWidth = width;
  return result;
}

QPainterPath Shape::outline(const QRectF& rect) const {
  QPainterPath path;
  switch (form) {
  case Form::rectangle:
    path.addRect(rect);
    break;
  case Form::roundedRectangle:
    path.addRoundedRect(rect, cornerRadius, cornerRadius);
    break;
  case Form::capsule: {
    const double radius = std::min(rect.width(), rect.height()) / 2;
    path.addRoundedRect(rect, radius, radius);
    break;
  }
  case Form::circle:
    path.addEllipse(squareIn(rect));
    break;
  case Form::superellipse:
    return superellipsePath(rect, cornerRadius);
  case Form::path:
    return QTransform::fromTranslate(rect.x(), rect.y())
        .scale(rect.width(), rect.height())
        .map(unitPath);
  }
  return path;
}

QSizeF Shape::measure(ViewContext&, const QSizeF& offer) const {
  return form == Form::circle ? squareOf(offer) : offer;
}

void Shape::paint(ViewContext& context, const QRectF& rect) const {
  if (rect.isEmpty())
    return;
  if (isVisible(fillColour))
    (form == Form::path ? fillPath : fillConvexPath)(context.painter, outline(rect),
                                                     fillOf(*this, rect));
  if (strokeWidth > 0 && isVisible(strokeColour)) {
    const double inset = strokeWidth / 2;
    Shape inner = *this;
    inner.cornerRadius = std::max(cornerRadius - inset, 0.0);
    const QRectF within = form == Form::path ? rect : rect.adjusted(inset, inset, -inset, -inset);
    strokePath(context.painter, inner.outline(within),
               QPen(strokeColour, strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  }
}

Shape rectangle() {
  return {};
}

Shape roundedRectangle(double cornerRadius) {
  return shaped(Shape::Form::roundedRectangle, cornerRadius);
}

Shape capsule() {
  return shaped(Shape::Form::capsule);
}

Shape circle() {
  return shaped(Shape::Form::circle);
}

Shape superellipse(double cornerRadius) {
  return shaped(Shape::Form::superellipse, cornerRadius);
}

Shape shape(QPainterPath unitPath) {
  Shape result = shaped(Shape::Form::path);
  result.unitPath = std::move(unitPath);
  return result;
}

Ring Ring::tint(const QColor& colour) const {
  Ring result = *this;
  result.tintColour = colour;
  return result;
}

Ring Ring::track(const QColor& colour) const {
  Ring result = *this;
  result.trackColour = colour;
  return result;
}

Ring Ring::thickness(double points) const {
  Ring result = *this;
  result.strokeWidth = points;
  return result;
}

Ring Ring::sweep(double degrees) const {
  Ring result = *this;
  result.sweepAngle = degrees;
  return result;
}

QSizeF Ring::measure(ViewContext&, const QSizeF& offer) const {
  return squareOf(offer);
}

void Ring::paint(ViewContext& context, const QRectF& rect) const {
  const QRectF square = squareIn(rect);
  const double width = strokeWidth > 0 ? strokeWidth : square.width() / 10;
  const QRectF line = square.adjusted(width / 2, width / 2, -width / 2, -width / 2);
  if (line.width() <= 0)
    return;
  const bool isClosed = sweepAngle >= 360;
  const double start = isClosed ? 90 : 90 + sweepAngle / 2;
  const auto draw = [&](const QColor& colour, double share) {
    if (!isVisible(colour) || share <= 0)
      return;
    QPainterPath path;
    if (isClosed && share >= 1) {
      path.addEllipse(line);
    } else {
      path.arcMoveTo(line, start);
      path.arcTo(line, start, -sweepAngle * share);
    }
    strokePath(context.painter, path, QPen(colour, width, Qt::SolidLine, Qt::RoundCap));
  };
  draw(trackColour, 1);
  draw(tintColour, std::min(progress, 1.0));
}

Ring ring(double progress) {
  return gauge<Ring>(progress);
}

Bar Bar::tint(const QColor& colour) const {
  Bar result = *this;
  result.tintColour = colour;
  return result;
}

Bar Bar::track(const QColor& colour) const {
  Bar result = *this;
  result.trackColour = colour;
  return result;
}

QSizeF Bar::measure(ViewContext&, const QSizeF& offer) const {
  return offer;
}

void Bar::paint(ViewContext& context, const QRectF& rect) const {
  if (rect.isEmpty())
    return;
  const double share = std::clamp(progress, 0.0, 1.0);
  const bool isWide = rect.width() >= rect.height();
  const double thickness = std::min(rect.width(), rect.height());
  // A level above nothing is at least a dot, so that it is told from nothing.
  const double length = std::max(std::max(rect.width(), rect.height()) * share, thickness);
  const double start = context.isMirrored ? rect.right() - length : rect.x();
  const QRectF level = isWide ? QRectF(start, rect.y(), length, thickness)
                              : QRectF(rect.x(), rect.bottom() - length, thickness, length);
  if (isVisible(trackColour))
    capsule().fill(trackColour).paint(context, rect);
  if (share > 0 && isVisible(tintColour))
    capsule().fill(tintColour).paint(context, level);
}

Bar bar(double progress) {
  return gauge<Bar>(progress);
}

} // namespace tavrin
