#pragma once

#include "TavrinWidgetsUI/Kit/Views/AnyView.h"

#include <QColor>
#include <QPainterPath>

namespace tavrin {

/// The outline of an icon body: straight sides, and corners that are quarters of a superellipse
/// of exponent 5 over `radius` points. Starts at the top centre and runs clockwise.
QPainterPath superellipsePath(const QRectF& rect, double radius);
/// The share of a body's height that its corner radius takes.
inline constexpr double bodyCornerRatio = 0.225;

/// A filled or stroked form that takes all the room offered; a circle the largest in the middle.
struct Shape : Modifiers<Shape> {
  enum class Form { rectangle, roundedRectangle, capsule, circle, superellipse, path };

  Form form = Form::rectangle;
  /// Points; for `roundedRectangle` and `superellipse`.
  double cornerRadius = 0;
  /// For `path`: drawn in the unit square, stretched to the rectangle.
  QPainterPath unitPath = {};
  QColor fillColour = {};
  /// A second colour makes a gradient from the top to the bottom.
  QColor fillEndColour = {};
  QColor strokeColour = {};
  /// Points; the stroke lies inside the form.
  double strokeWidth = 0;

  Shape fill(const QColor& colour) const;
  Shape gradient(const QColor& top, const QColor& bottom) const;
  Shape stroke(const QColor& colour, double width) const;
  using Modifiers<Shape>::fill;

  QPainterPath outline(const QRectF& rect) const;
  QSizeF measure(ViewContext& context, const QSizeF& offer) const;
  void paint(ViewContext& context, const QRectF& rect) const;
  bool operator==(const Shape&) const = default;
};

Shape rectangle();
Shape roundedRectangle(double cornerRadius);
Shape capsule();
Shape circle();
Shape superellipse(double cornerRadius);
/// `unitPath` in the square (0, 0) to (1, 1).
Shape shape(QPainterPath unitPath);

/// A round gauge from the top, clockwise. 0 or less draws the track alone, 1 or more a closed
/// ring. Takes the largest square offered.
struct Ring : Modifiers<Ring> {
  double progress = 0;
  QColor tintColour = {};
  QColor trackColour = {};
  /// Points; 0 means a tenth of the side.
  double strokeWidth = 0;
  /// The gauge's sweep in degrees, centred at the top; 360 is a whole ring.
  double sweepAngle = 360;

  Ring tint(const QColor& colour) const;
  Ring track(const QColor& colour) const;
  Ring thickness(double points) const;
  /// An open gauge of `degrees`, its gap at the bottom.
  Ring sweep(double degrees) const;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const;
  void paint(ViewContext& context, const QRectF& rect) const;
  bool operator==(const Ring&) const = default;
};

Ring ring(double progress);

/// A straight gauge that takes the room offered, along its longer side: from the left, or from
/// the bottom.
struct Bar : Modifiers<Bar> {
  double progress = 0;
  QColor tintColour = {};
  QColor trackColour = {};

  Bar tint(const QColor& colour) const;
  Bar track(const QColor& colour) const;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const;
  void paint(ViewContext& context, const QRectF& rect) const;
  bool operator==(const Bar&) const = default;
};

Bar bar(double progress);

/// The border along a body's edge, from the top centre clockwise with round caps; its rectangle
/// is the body's. Progress 0 draws the track alone, 1 a closed ring.
struct ProgressBorder : Modifiers<ProgressBorder> {
  double progress = 0;
  QColor tintColour = {};
  QColor trackColour = {};
  /// Stroke by body height.
  double widthRatio = 0.07;
  /// Where on the way 0...1 the level begins.
  double start = 0;

  ProgressBorder tint(const QColor& colour) const;
  ProgressBorder track(const QColor& colour) const;
  ProgressBorder from(double start) const;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const;
  void paint(ViewContext& context, const QRectF& rect) const;
  bool operator==(const ProgressBorder&) const = default;
};

ProgressBorder progressBorder(double progress);

/// An icon body that fills its rectangle's middle: height 0.805 of the tile's side, as wide as
/// the rectangle less the same margin at both ends, on a soft shadow. Its pixels are kept.
AnyView tileBody(const Shape& form, double side);

} // namespace tavrin
