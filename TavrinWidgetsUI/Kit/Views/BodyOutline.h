#pragma once

#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <vector>

namespace tavrin {

/// The outline of an icon body as points with inward normals, from the top centre clockwise:
/// straight sides between quarter superellipses |x|^5 + |y|^5 = e^5. A corner of radius r spans
/// e = r / 0.45, so the square body of radius 0.225 is one whole superellipse.
class BodyOutline {
public:
  BodyOutline(const QRectF& rect, double radius);

  /// The closed outline moved inwards by `inset` everywhere.
  QPolygonF polygon(double inset = 0) const;
  /// The ribbon from `inset` to `inset + width` along the outline between the shares `from` and
  /// `to`, its ends half circles. Closed rings are two polygons, to be filled odd-even.
  QPolygonF ribbon(double inset, double width, double from, double to) const;

private:
  struct Sample {
    QPointF point;
    QPointF inward;
  };
  void addCorner(QPointF centre, double extent, int quarter);

  std::vector<Sample> samples_;
};

} // namespace tavrin
