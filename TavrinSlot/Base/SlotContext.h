#pragma once

#include <functional>

namespace tavrin {

class DockPanelPresenter;
class DockTileRenderer;
class Platform;

/// What `SlotApp` hands to every controller; it outlives them all.
struct SlotContext {
  Platform& platform;
  DockTileRenderer& tile;
  DockPanelPresenter& panel;
  /// Asks the host to edit this widget.
  std::function<void()> onEdit;
};

} // namespace tavrin
