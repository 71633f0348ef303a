#pragma once

#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"

#include <QString>
#include <utility>

namespace tavrin::test {

/// What assistive technology hears of a tile.
inline std::pair<QString, QString> spoken(const AnyView& view, const TileSize& size) {
  ViewRenderer renderer;
  renderer.render(view, {size.width(), size.height()}, 1);
  if (renderer.elements().size() != 1)
    return {QString::number(renderer.elements().size()) + " elements", {}};
  return {renderer.elements()[0].label, renderer.elements()[0].value};
}

} // namespace tavrin::test
