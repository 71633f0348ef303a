#pragma once

#include "TavrinCore/Widgets/DockWidget.h"

#include <filesystem>
#include <vector>

namespace tavrin {

/// The glue between one widget record and its two surfaces, the tile and the panel.
///
/// A controller is made, begins, follows its record, and leaves before it is destroyed. One that
/// has left may be given another widget's record and begin anew; nothing of the life before is
/// left in it.
class WidgetController {
public:
  virtual ~WidgetController() = default;
  /// The record changed or was read again: applies it, and draws. Between `leave` and `begin` it
  /// may be another widget's, and nothing is drawn. Records of kinds that this controller does not
  /// serve are not taken, nor, while it lives, those of other widgets.
  virtual void update(const DockWidget& widget) = 0;
  /// The tile was clicked: opens or closes the panel.
  virtual void togglePanel() = 0;

  /// The tile stands at its place: starts what the widget shows and draws it. A panel that stands
  /// open becomes this widget's. Until then nothing is drawn, read or observed.
  virtual void begin() = 0;
  /// The widget goes: saves into its own record what is not saved yet, gives back what is held,
  /// and lets go of tile and panel. An open panel is told that it closed, and stays open, empty.
  virtual void leave() = 0;
  /// The tile has another size, span or scale.
  virtual void redraw() = 0;
  /// Files were dropped on the tile. Whether the widget took them.
  virtual bool openFiles(const std::vector<std::filesystem::path>& paths) = 0;
};

} // namespace tavrin
