#include "TavrinWidgetsUI/Kit/Views/Gauges.h"

#include "TavrinCore/Text/DecimalText.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

/// Below this side a ring has no room for "100%".
constexpr double smallestForPercent = 56;

void paintSparkline(QPainter& painter, const QRectF& rect, const Sparkline& line) {
  if (line.values.empty() || line.capacity < 2)
    return;
  const double inset = line.lineWidth / 2;
  const QRectF room = rect.adjusted(inset, inset, -inset, -inset);
  const double step = room.width() / static_cast<double>(line.capacity - 1);
  const double peak = line.peak > 0 ? line.peak : 1;
  QPainterPath path;
  double x = room.right() - step * static_cast<double>(line.values.size() - 1);
  const double first = x;
  for (const double value : line.values) {
    const double level = std::isfinite(value) ? std::clamp(value / peak, 0.0, 1.0) : 0;
    const QPointF point(x, room.bottom() - level * room.height());
    if (path.elementCount() == 0)
      path.moveTo(point);
    else
      path.lineTo(point);
    x += step;
  }
  QPainterPath area = path;
  area.lineTo(room.right(), rect.bottom());
  area.lineTo(first, rect.bottom());
  area.closeSubpath();
  QLinearGradient fade(rect.topLeft(), rect.bottomLeft());
  fade.setColorAt(0, withOpacity(line.tint, 0.45));
  fade.setColorAt(1, withOpacity(line.tint, 0.06));
  painter.setClipRect(rect);
  painter.fillPath(area, fade);
  painter.strokePath(path,
                     QPen(line.tint, line.lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

} // namespace

AnyView GaugeRing::view() const {
  return zstack({ring(value).tint(tint).track(track).thickness(thickness), label});
}

AnyView Sparkline::view() const {
  return canvas(*this, paintSparkline);
}

namespace {

long percentOf(double fraction) {
  return std::lround(std::isfinite(fraction) ? std::clamp(fraction * 100, 0.0, 999.0) : 0);
}

} // namespace

QString percentText(double fraction) {
  return QString::fromStdString(wholePercentText(percentOf(fraction)));
}

QString gaugeText(double fraction, const TileSize& size) {
  const long percent = percentOf(fraction);
  return percent > 99 && size.side < smallestForPercent ? QString::number(percent)
                                                        : percentText(fraction);
}

} // namespace tavrin
