#include "TavrinWidgetsUI/Kit/Views/BodyOutline.h"

#include "TavrinWidgetsUI/Kit/Views/Shape.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace tavrin {

namespace {

constexpr double exponent = 5;
constexpr int cornerSteps = 28;
constexpr int capSteps = 10;

struct CurvePoint {
  QPointF place;
  QPointF outward;
};

/// A quarter of the unit superellipse from (0, 1) to (1, 0), its points dense where it bends.
std::array<CurvePoint, cornerSteps + 1> makeQuarter() {
  std::array<CurvePoint, cornerSteps + 1> quarter;
  for (int i = 0; i <= cornerSteps; ++i) {
    const double angle = std::numbers::pi / 2 * i / cornerSteps;
    const double sine = i == cornerSteps ? 1 : std::sin(angle);
    const double cosine = i == cornerSteps ? 0 : std::cos(angle);
    const double length =
        std::pow(std::pow(sine, exponent) + std::pow(cosine, exponent), -1 / exponent);
    const QPointF place(length * sine, length * cosine);
    const QPointF gradient(std::pow(place.x(), exponent - 1), std::pow(place.y(), exponent - 1));
    const double size = std::hypot(gradient.x(), gradient.y());
    quarter[static_cast<std::size_t>(i)] = {place, gradient / size};
  }
  return quarter;
}

/// Clockwise quarter turns, y downwards.
QPointF turned(QPointF point, int quarter) {
  for (; quarter > 0; --quarter)
    point = {-point.y(), point.x()};
  return point;
}

void addCap(QPolygonF& polygon, QPointF from, QPointF to, bool clockwise) {
  const QPointF centre = (from + to) / 2;
  const QPointF arm = from - centre;
  for (int i = 1; i < capSteps; ++i) {
    const double angle = (clockwise ? 1 : -1) * std::numbers::pi * i / capSteps;
    const double sine = std::sin(angle);
    const double cosine = std::cos(angle);
    polygon << centre +
                   QPointF(arm.x() * cosine - arm.y() * sine, arm.x() * sine + arm.y() * cosine);
  }
}

} // namespace

BodyOutline::BodyOutline(const QRectF& rect, double radius) {
  const double extent =
      std::min({radius * 0.5 / bodyCornerRatio, rect.width() / 2, rect.height() / 2});
  const double dx = rect.width() / 2 - extent;
  const double dy = rect.height() / 2 - extent;
  const QPointF middle = rect.center();
  samples_.reserve(4 * (cornerSteps + 1) + 2);
  samples_.push_back({{middle.x(), rect.top()}, {0, 1}});
  addCorner(middle + QPointF(dx, -dy), extent, 0);
  addCorner(middle + QPointF(dx, dy), extent, 1);
  addCorner(middle + QPointF(-dx, dy), extent, 2);
  addCorner(middle + QPointF(-dx, -dy), extent, 3);
  samples_.push_back(samples_.front());
}

void BodyOutline::addCorner(QPointF centre, double extent, int quarter) {
  static const auto curve = makeQuarter();
  for (const CurvePoint& at : curve)
    samples_.push_back({centre + turned({at.place.x(), -at.place.y()}, quarter) * extent,
                        turned({-at.outward.x(), at.outward.y()}, quarter)});
}

QPolygonF BodyOutline::polygon(double inset) const {
  QPolygonF result;
  result.reserve(static_cast<qsizetype>(samples_.size()));
  for (const Sample& sample : samples_)
    result << sample.point + sample.inward * inset;
  return result;
}

QPolygonF BodyOutline::ribbon(double inset, double width, double from, double to) const {
  const double middle = inset + width / 2;
  std::vector<double> lengths{0};
  lengths.reserve(samples_.size());
  for (std::size_t i = 1; i < samples_.size(); ++i) {
    const QPointF step = samples_[i].point - samples_[i - 1].point +
                         (samples_[i].inward - samples_[i - 1].inward) * middle;
    lengths.push_back(lengths.back() + std::hypot(step.x(), step.y()));
  }
  const double begin = lengths.back() * std::clamp(from, 0.0, 1.0);
  const double end = lengths.back() * std::clamp(to, 0.0, 1.0);
  QPolygonF outer;
  QPolygonF inner;
  const auto add = [&](std::size_t i, double share) {
    const QPointF point = samples_[i - 1].point * (1 - share) + samples_[i].point * share;
    QPointF inward = samples_[i - 1].inward * (1 - share) + samples_[i].inward * share;
    inward /= std::max(std::hypot(inward.x(), inward.y()), 1e-9);
    outer << point + inward * inset;
    inner << point + inward * (inset + width);
  };
  for (std::size_t i = 1; i < samples_.size(); ++i) {
    const double step = lengths[i] - lengths[i - 1];
    if (step <= 0 || lengths[i] < begin || lengths[i - 1] > end)
      continue;
    if (outer.isEmpty())
      add(i, (begin - lengths[i - 1]) / step);
    add(i, std::min((end - lengths[i - 1]) / step, 1.0));
  }
  if (outer.isEmpty())
    return {};
  const bool isClosed = to - from >= 1;
  const QPointF start = outer.front();
  if (!isClosed)
    addCap(outer, outer.back(), inner.back(), true);
  for (auto point = inner.crbegin(); point != inner.crend(); ++point)
    outer << *point;
  if (!isClosed)
    addCap(outer, inner.front(), start, true);
  return outer;
}

} // namespace tavrin
