#pragma once

#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"

#include <cstdlib>

namespace tavrin {

inline QImage rendered(const AnyView& view, const QSizeF& size, double scale = 1) {
  ViewRenderer renderer;
  renderer.render(view, size, scale);
  return renderer.image().copy();
}

inline bool isNear(const QColor& a, const QColor& b, int tolerance = 6) {
  return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance &&
         std::abs(a.blue() - b.blue()) <= tolerance && std::abs(a.alpha() - b.alpha()) <= tolerance;
}

/// The least rectangle that holds all pixels with more alpha than `alpha`.
inline QRect inkedRect(const QImage& image, int alpha = 0) {
  QRect result;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (image.pixelColor(x, y).alpha() > alpha)
        result |= QRect(x, y, 1, 1);
  return result;
}

inline int countOf(const QImage& image, const QColor& colour) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      count += isNear(image.pixelColor(x, y), colour);
  return count;
}

} // namespace tavrin
