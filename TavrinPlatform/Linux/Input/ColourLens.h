#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>

class QPainter;

namespace tavrin {

/// The magnifier of a colour pick: the pixels about the pointer, each as a square, and the middle
/// one's value below them.
struct ColourLens {
  /// Pixels to each side of the one in the middle.
  static constexpr int reach = 6;
  /// Of the whole, in points.
  static constexpr QSize size{130, 156};

  /// `pixels` is a square of them about the pointer's.
  static void paint(QPainter& painter, const QImage& pixels);
  /// The square about a pixel of `whole`; black beyond its edge.
  static QImage around(const QImage& whole, QPoint pixel);
  /// Beside a pointer at `place`, within `room`.
  static QPoint beside(QPoint place, const QRect& room);
};

} // namespace tavrin
