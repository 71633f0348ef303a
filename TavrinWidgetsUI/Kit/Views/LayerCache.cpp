#include "TavrinWidgetsUI/Kit/Views/LayerCache.h"

#include <algorithm>

namespace tavrin {

KeptLayer* LayerCache::find(const AnyView& view, const QRectF& within, double scale) {
  const auto found = std::find_if(layers_.begin(), layers_.end(), [&](const KeptLayer& layer) {
    return layer.scale == scale && layer.within == within && layer.view == view;
  });
  if (found == layers_.end())
    return nullptr;
  markUsed(*found);
  return &*found;
}

KeptLayer* LayerCache::add(KeptLayer layer) {
  layers_.push_back(std::move(layer));
  return &layers_.back();
}

void LayerCache::markUsed(KeptLayer& layer) {
  layer.isUsed = true;
  for (KeptLayer* base : layer.bases)
    markUsed(*base);
}

void LayerCache::beginPainting() {
  for (KeptLayer& layer : layers_)
    layer.isUsed = false;
}

void LayerCache::endPainting() {
  std::erase_if(layers_, [](const KeptLayer& layer) { return !layer.isUsed; });
}

} // namespace tavrin
