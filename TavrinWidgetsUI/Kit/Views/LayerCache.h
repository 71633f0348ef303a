#pragma once

#include "TavrinWidgetsUI/Kit/Views/ViewContext.h"

#include <QImage>
#include <list>

namespace tavrin {

/// The pixels of a still part of a picture.
struct KeptLayer {
  AnyView view;
  /// The view's rectangle in pixels, less the image's place: fractions of a pixel matter.
  QRectF within;
  double scale = 0;
  QImage image;
  /// In points from the rectangle's top left.
  std::vector<ViewButton> buttons;
  std::vector<AccessibleElement> elements;
  /// The layers kept for painting this one again: they stay as long as it does.
  std::vector<KeptLayer*> bases;
  bool isUsed = true;
};

/// The pixels of still parts of a picture, kept from one painting to the next and no longer.
class LayerCache {
public:
  void beginPainting();
  void endPainting();
  /// No value where there is none yet.
  KeptLayer* find(const AnyView& view, const QRectF& within, double scale);
  KeptLayer* add(KeptLayer layer);

private:
  static void markUsed(KeptLayer& layer);

  std::list<KeptLayer> layers_;
};

} // namespace tavrin
