#pragma once

#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <vector>

namespace tavrin {

/// A ring of a value 0...1 around a label.
struct GaugeRing {
  double value = 0;
  QColor tint;
  QColor track = palette::track;
  /// Points.
  double thickness = 4;
  AnyView label = {};

  AnyView view() const;
};

/// A line through values, the last one at the right end, over a faint fill. The values stand
/// `capacity` to the whole width, so that the line comes in from the right; `peak` is at the top.
struct Sparkline {
  std::vector<double> values;
  std::size_t capacity = 30;
  double peak = 1;
  QColor tint;
  /// Points.
  double lineWidth = 2;

  AnyView view() const;
  bool operator==(const Sparkline&) const = default;
};

/// The text of a gauge's value, "61%".
QString percentText(double fraction);
/// The same inside a tile's ring, where a small tile has no room for "100%".
QString gaugeText(double fraction, const TileSize& size);

} // namespace tavrin
