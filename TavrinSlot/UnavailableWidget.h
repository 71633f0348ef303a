#pragma once

#include "TavrinSlot/BasicWidgetController.h"

namespace tavrin {

/// Stands in for a kind that this build does not have: says so, and keeps the widget as it is.
class UnavailableWidgetController final : public BasicWidgetController {
public:
  UnavailableWidgetController(const SlotContext& context, const DockWidget& widget);

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
};

} // namespace tavrin
