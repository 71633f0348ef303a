#include "TavrinSlot/UnavailableWidget.h"

#include "TavrinWidgetsUI/UnavailableViews.h"

namespace tavrin {

UnavailableWidgetController::UnavailableWidgetController(const SlotContext& context,
                                                         const DockWidget& widget)
    : BasicWidgetController(context, widget) {
  renderTile();
}

AnyView UnavailableWidgetController::tileView(const TileSize& size) const {
  return unavailableTile(widget(), size);
}

PanelView* UnavailableWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new UnavailablePanelView(
      appearance, [this]() -> const DockWidget& { return widget(); }, context().onEdit);
}

} // namespace tavrin
