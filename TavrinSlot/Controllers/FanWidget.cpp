#include "TavrinSlot/Controllers/FanWidget.h"

namespace tavrin {

void FanWidgetController::start() {
  fans_.emplace(platform().runLoop(), platform().smc(), platform().fanHelper());
  fans_->onChange = [this] { refresh(); };
  fans_->start();
}

void FanWidgetController::stop() {
  fans_->handBack();
  fans_.reset();
}

AnyView FanWidgetController::tileView(const TileSize& size) {
  const auto status = FanStatus::of(*fans_);
  return size.isWide() ? fanWideTile(name(), status, size, toggle_) : fanTileIcon(status, size);
}

PanelView* FanWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new FanPanelView(
      appearance, *fans_, [this] { return name(); }, context().onEdit);
}

} // namespace tavrin
