#include "TavrinCore/Widgets/DockTileGeometry.h"
#include "TavrinWidgetsUI/Kit/Pictures/Fill.h"
#include "TavrinWidgetsUI/Kit/Views/BodyOutline.h"
#include "TavrinWidgetsUI/Kit/Views/Colour.h"
#include "TavrinWidgetsUI/Kit/Views/Modifiers.h"
#include "TavrinWidgetsUI/Kit/Views/Shape.h"
#include "TavrinWidgetsUI/Kit/Views/ViewContext.h"

#include <algorithm>

namespace tavrin {

namespace {

constexpr double shadowRatio = 0.02;
constexpr int shadowSteps = 3;

/// The body with its shadow, in the whole picture's rectangle.
struct TileBody : Modifiers<TileBody> {
  Shape form;
  double side = 0;

  QSizeF measure(ViewContext&, const QSizeF& offer) const { return offer; }

  void paint(ViewContext& context, const QRectF& rect) const {
    const double margin = side * (1 - DockTileGeometry::iconBodyRatio) / 2;
    const QRectF body = rect.adjusted(margin, margin, -margin, -margin);
    QPainter& painter = context.painter;
    const BodyOutline outline(body, body.height() * bodyCornerRatio);
    // Faint layers that add up towards the body make the shadow soft.
    for (int step = 0; step < shadowSteps; ++step) {
      const double spread = side * shadowRatio * (shadowSteps - step) / shadowSteps;
      QPainterPath path;
      path.addPolygon(outline.polygon(-spread));
      fillConvexPath(painter, path, QColor(0, 0, 0, 26));
    }
    Shape whole = form;
    whole.form = Shape::Form::superellipse;
    whole.cornerRadius = body.height() * bodyCornerRatio;
    whole.paint(context, body);
  }

  bool operator==(const TileBody&) const = default;
};

} // namespace

AnyView tileBody(const Shape& form, double side) {
  return modifiers::cached(TileBody{{}, form, side});
}

ProgressBorder ProgressBorder::tint(const QColor& colour) const {
  ProgressBorder result = *this;
  result.tintColour = colour;
  return result;
}

ProgressBorder ProgressBorder::track(const QColor& colour) const {
  ProgressBorder result = *this;
  result.trackColour = colour;
  return result;
}

ProgressBorder ProgressBorder::from(double start) const {
  ProgressBorder result = *this;
  result.start = start;
  return result;
}

QSizeF ProgressBorder::measure(ViewContext&, const QSizeF& offer) const {
  return offer;
}

void ProgressBorder::paint(ViewContext& context, const QRectF& rect) const {
  if (rect.isEmpty())
    return;
  const double width = rect.height() * widthRatio;
  const BodyOutline outline(rect, rect.height() * bodyCornerRatio);
  const auto draw = [&](const QColor& colour, double from, double to) {
    if (!colour.isValid() || colour.alpha() == 0 || to <= from)
      return;
    // A closed ring crosses nothing but its own seam; an open ribbon may touch its own cap.
    QPainterPath path;
    path.addPolygon(outline.ribbon(0, width, from, to));
    path.setFillRule(to - from < 1 ? Qt::WindingFill : Qt::OddEvenFill);
    fillPath(context.painter, path, colour);
  };
  draw(trackColour, 0, 1);
  draw(tintColour, start, std::min(progress, 1.0));
}

ProgressBorder progressBorder(double progress) {
  ProgressBorder result;
  result.progress = progress;
  result.tintColour = palette::blue;
  result.trackColour = palette::track;
  return result;
}

} // namespace tavrin
