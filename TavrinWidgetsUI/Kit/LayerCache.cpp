#include "TavrinWidgetsUI/Kit/LayerCache.h"

#include <algorithm>

namespace tavrin {

const LayerCache::Layer* LayerCache::find(const AnyView& view, const QRectF& within, double scale) {
  const auto found = std::find_if(layers_.begin(), layers_.end(), [&](const Layer& layer) {
    return layer.scale == scale && layer.within == within && layer.view == view;
  });
  if (found == layers_.end())
    return nullptr;
  layers_.splice(layers_.begin(), layers_, found);
  return &layers_.front();
}

const LayerCache::Layer& LayerCache::add(Layer layer) {
  layers_.push_front(std::move(layer));
  if (layers_.size() > countLimit)
    layers_.pop_back();
  qsizetype bytes = 0;
  for (auto entry = layers_.begin(); entry != layers_.end();) {
    bytes += entry->image.sizeInBytes();
    entry = bytes > byteLimit && entry != layers_.begin() ? layers_.erase(entry) : std::next(entry);
  }
  return layers_.front();
}

} // namespace tavrin
