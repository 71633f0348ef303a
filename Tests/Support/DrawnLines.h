#pragma once

#include "TavrinWidgetsUI/Kit/Views/LayerCache.h"
#include "TavrinWidgetsUI/Kit/Views/TextEngine.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"
#include "TavrinWidgetsUI/Kit/Views/ViewContext.h"

#include <QImage>
#include <QPainter>

namespace tavrin::test {

inline constexpr double drawnScale = 2;
using DrawnLines = std::vector<TextEngine::DrawnLine>;

/// What a tile says, at `drawnScale` pixels a point.
inline DrawnLines linesOf(const AnyView& view, const TileSize& size) {
  QImage image(int(size.width() * drawnScale), int(size.height() * drawnScale),
               QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.scale(drawnScale, drawnScale);
  TextEngine engine;
  LayerCache layers;
  DrawnLines lines;
  engine.drawnLines = &lines;
  ViewContext context(painter, drawnScale, engine, layers);
  // Layers have pictures of their own, in which a line would be at another place.
  context.isInLayer = true;
  layers.beginPainting();
  view.paint(context, {0, 0, size.width(), size.height()});
  layers.endPainting();
  return lines;
}

} // namespace tavrin::test
