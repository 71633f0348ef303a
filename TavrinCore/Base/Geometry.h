#pragma once

#include <optional>

namespace tavrin {

/// Screen coordinates in points, origin at the bottom left of the first screen, y upwards.
struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  double minX() const { return x; }
  double maxX() const { return x + width; }
  double minY() const { return y; }
  double maxY() const { return y + height; }
  /// Left and bottom edges belong to it, right and top edges do not.
  bool contains(Point point) const {
    return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
  }
  bool operator==(const Rect&) const = default;
};

/// The side of a rectangle towards which a panel opens.
enum class RectEdge { minX, minY, maxX, maxY };

} // namespace tavrin
