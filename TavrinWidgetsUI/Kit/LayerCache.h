#pragma once

#include "TavrinWidgetsUI/Kit/ViewContext.h"

#include <QImage>
#include <list>

namespace tavrin {

/// The pixels of still parts of a picture, the most recently used of them up to a bound in bytes.
class LayerCache {
public:
  struct Layer {
    AnyView view;
    /// The view's rectangle in pixels, less the image's place: fractions of a pixel matter.
    QRectF within;
    double scale = 0;
    QImage image;
    /// In points from the rectangle's top left.
    std::vector<ViewButton> buttons;
    std::vector<AccessibleElement> elements;
  };

  static constexpr qsizetype byteLimit = 1280 * 1024;
  static constexpr std::size_t countLimit = 6;

  /// No value where there is none yet; valid until the next call.
  const Layer* find(const AnyView& view, const QRectF& within, double scale);
  const Layer& add(Layer layer);

private:
  std::list<Layer> layers_;
};

} // namespace tavrin
