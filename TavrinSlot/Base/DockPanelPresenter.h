#pragma once

#include "TavrinPlatform/DockGeometry.h"
#include "TavrinPlatform/PanelPopover.h"

#include <functional>

class QWidget;

namespace tavrin {

/// Where a panel's arrow points, and the side it opens to.
struct PanelAnchor {
  Point point;
  RectEdge edge = RectEdge::maxY;
  bool operator==(const PanelAnchor&) const = default;
};

/// The anchor for a click at the pointer: the centre of the own tile where the platform knows it,
/// else of the tile cell under the pointer, 2 points off the Dock's frame; without a frame 4 points
/// off what the screen reserves; else half a tile and 4 points from the pointer. A magnified Dock's
/// tiles are not at rest, so there the pointer itself counts.
PanelAnchor anchorPoint(const DockGeometry& geometry);
PanelAnchor fallbackAnchorPoint(const DockGeometry& geometry, Point mouse,
                                const DockPreferences& preferences);

/// The one panel of this process, opened at the tile.
class DockPanelPresenter {
public:
  DockPanelPresenter(PanelPopover& popover, DockGeometry& geometry)
      : popover_(popover), geometry_(geometry) {
    popover_.onClose = [this] {
      if (onClose)
        onClose();
    };
  }
  ~DockPanelPresenter() { popover_.onClose = nullptr; }
  DockPanelPresenter(const DockPanelPresenter&) = delete;
  DockPanelPresenter& operator=(const DockPanelPresenter&) = delete;

  /// What the panel holds; owned by the popover from now on.
  void setRootView(QWidget* view) { popover_.setContent(view); }
  QWidget* rootView() const { return popover_.content(); }
  /// Resizes the panel to its content's fitting size.
  void fitContent();

  bool isShown() const { return popover_.isShown(); }
  void toggle();
  /// Moves a shown panel to its tile, where the platform knows the tile's place.
  void followTile();
  /// The same close as Escape.
  void closeIfShown();

  /// The panel closed, whoever closed it.
  std::function<void()> onClose;

private:
  PanelPopover& popover_;
  DockGeometry& geometry_;
};

} // namespace tavrin
