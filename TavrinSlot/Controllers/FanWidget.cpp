#include "TavrinSlot/Controllers/FanWidget.h"

namespace tavrin {

FanWidgetController::FanWidgetController(const SlotContext& context, const DockWidget& widget)
    : BasicWidgetController(context, widget),
      fans_(platform().runLoop(), platform().smc(), platform().fanHelper()) {
  fans_.onChange = [this] { refresh(); };
  fans_.start();
  renderTile();
}

AnyView FanWidgetController::tileView(const TileSize& size) const {
  const auto status = FanStatus::of(fans_);
  return size.isWide() ? fanWideTile(name(), status, size, toggle_) : fanTileIcon(status, size);
}

PanelView* FanWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new FanPanelView(
      appearance, fans_, [this] { return name(); }, context().onEdit);
}

} // namespace tavrin
