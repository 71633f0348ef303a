#pragma once

#include <QColor>

namespace tavrin {

/// A ground that runs from one colour into another.
struct GradientGround {
  QColor from;
  QColor to;

  /// Both ends as near to themselves as one ink, white or black, has a contrast of 4.6 on each.
  GradientGround legible() const;
  /// The end that this ink is read least well on: a text may stand anywhere between the two.
  QColor harder() const;
};

} // namespace tavrin
