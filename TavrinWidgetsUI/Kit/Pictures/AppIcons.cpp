#include "TavrinWidgetsUI/Kit/Pictures/AppIcons.h"

#include <algorithm>

namespace tavrin {
namespace {

constexpr std::size_t mostKept = 400;
constexpr int largestPoints = 512;
constexpr int largestScale = 4;

} // namespace

QImage AppIcons::image(const std::string& icon, int points, int scale) {
  if (icon.empty())
    return {};
  if (kept_.size() >= mostKept)
    kept_.clear();
  const Key key{icon, std::clamp(points, 8, largestPoints), std::clamp(scale, 1, largestScale)};
  Kept& kept = kept_[key];
  if (std::exchange(kept.isStale, false))
    kept.asking = library_.icon(key.icon, key.points, key.scale, [this, key](const QImage& image) {
      const auto found = kept_.find(key);
      if (found == kept_.end())
        return;
      const TokenPtr ended = std::move(found->second.asking);
      if (image == found->second.image)
        return;
      found->second.image = image;
      if (onLoad)
        onLoad();
    });
  return kept.image;
}

void AppIcons::refresh() {
  for (auto& [key, kept] : kept_)
    kept.isStale = true;
}

} // namespace tavrin
