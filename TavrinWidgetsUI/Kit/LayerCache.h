#pragma once

#include "TavrinWidgetsUI/Kit/ViewContext.h"

#include <QImage>
#include <list>

namespace tavrin {

/// The pixels of still parts of a picture, kept from one painting to the next and no longer.
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
    bool isUsed = true;
  };

  void beginPainting();
  void endPainting();
  /// No value where there is none yet.
  const Layer* find(const AnyView& view, const QRectF& within, double scale);
  const Layer& add(Layer layer);

private:
  std::list<Layer> layers_;
};

} // namespace tavrin
