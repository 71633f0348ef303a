#include "TavrinSlot/Base/DockPanelPresenter.h"

#include "TavrinCore/Widgets/DockTileGeometry.h"

#include <QWidget>

namespace tavrin {
namespace {

constexpr double frameGap = 2;
constexpr double reservedGap = 4;

/// The axis of a vertical Dock runs down from its top.
double verticalCenter(const DockGeometry& geometry, Point mouse, const Rect& frame,
                      const DockPreferences& preferences) {
  if (const auto own = geometry.ownTileCenter())
    return own->y;
  if (preferences.magnification)
    return mouse.y;
  return -DockTileGeometry::iconCenter(-mouse.y, -frame.maxY(), preferences.tileSize);
}

double horizontalCenter(const DockGeometry& geometry, Point mouse, const Rect& frame,
                        const DockPreferences& preferences) {
  if (const auto own = geometry.ownTileCenter())
    return own->x;
  if (preferences.magnification)
    return mouse.x;
  return DockTileGeometry::iconCenter(mouse.x, frame.minX(), preferences.tileSize);
}

ScreenFrames screenUnder(const DockGeometry& geometry, Point mouse) {
  for (const auto& screen : geometry.screens())
    if (screen.frame.contains(mouse))
      return screen;
  return geometry.mainScreen().value_or(ScreenFrames{});
}

} // namespace

PanelAnchor anchorPoint(const DockGeometry& geometry) {
  const Point mouse = geometry.pointer();
  const DockPreferences preferences = geometry.preferences();
  const auto frame = geometry.dockFrame();
  if (!frame)
    return fallbackAnchorPoint(geometry, mouse, preferences);
  if (preferences.orientation == "left")
    return {{frame->maxX() + frameGap, verticalCenter(geometry, mouse, *frame, preferences)},
            RectEdge::maxX};
  if (preferences.orientation == "right")
    return {{frame->minX() - frameGap, verticalCenter(geometry, mouse, *frame, preferences)},
            RectEdge::minX};
  return {{horizontalCenter(geometry, mouse, *frame, preferences), frame->maxY() + frameGap},
          RectEdge::maxY};
}

PanelAnchor fallbackAnchorPoint(const DockGeometry& geometry, Point mouse,
                                const DockPreferences& preferences) {
  const auto [full, visible] = screenUnder(geometry, mouse);
  const double fromPointer = preferences.tileSize * 0.5 + reservedGap;
  if (preferences.orientation == "left") {
    const double x =
        visible.minX() > full.minX() ? visible.minX() + reservedGap : mouse.x + fromPointer;
    return {{x, mouse.y}, RectEdge::maxX};
  }
  if (preferences.orientation == "right") {
    const double x =
        visible.maxX() < full.maxX() ? visible.maxX() - reservedGap : mouse.x - fromPointer;
    return {{x, mouse.y}, RectEdge::minX};
  }
  const double y =
      visible.minY() > full.minY() ? visible.minY() + reservedGap : mouse.y + fromPointer;
  return {{mouse.x, y}, RectEdge::maxY};
}

void DockPanelPresenter::fitContent() {
  if (const auto* view = popover_.content())
    popover_.setContentSize(view->sizeHint());
}

void DockPanelPresenter::toggle() {
  if (popover_.isShown()) {
    popover_.close();
    return;
  }
  fitContent();
  const auto [point, edge] = anchorPoint(geometry_);
  popover_.show(point, edge);
}

void DockPanelPresenter::followTile() {
  if (!popover_.isShown() || !geometry_.ownTileCenter())
    return;
  const auto [point, edge] = anchorPoint(geometry_);
  popover_.show(point, edge);
}

void DockPanelPresenter::closeIfShown() {
  if (popover_.isShown())
    popover_.close();
}

} // namespace tavrin
