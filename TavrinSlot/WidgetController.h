#pragma once

#include "TavrinCore/Widgets/DockWidget.h"

namespace tavrin {

/// The glue between one widget record and its two surfaces, the tile and the panel.
class WidgetController {
public:
  virtual ~WidgetController() = default;
  /// The record changed, was read again, or the tile has another format: apply it and draw.
  virtual void update(const DockWidget& widget) = 0;
  /// The tile was clicked: open or close the panel.
  virtual void togglePanel() = 0;
};

} // namespace tavrin
