#include "TavrinWidgetsUI/Kit/LayerCache.h"

#include <algorithm>

namespace tavrin {

const LayerCache::Layer* LayerCache::find(const AnyView& view, const QRectF& within, double scale) {
  const auto found = std::find_if(layers_.begin(), layers_.end(), [&](const Layer& layer) {
    return layer.scale == scale && layer.within == within && layer.view == view;
  });
  if (found == layers_.end())
    return nullptr;
  found->isUsed = true;
  return &*found;
}

const LayerCache::Layer& LayerCache::add(Layer layer) {
  layers_.push_back(std::move(layer));
  return layers_.back();
}

void LayerCache::beginPainting() {
  for (Layer& layer : layers_)
    layer.isUsed = false;
}

void LayerCache::endPainting() {
  std::erase_if(layers_, [](const Layer& layer) { return !layer.isUsed; });
}

} // namespace tavrin
