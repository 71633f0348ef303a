#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinWidgetsUI/Collection/CollectionModel.h"

namespace tavrin {

class CollectionWidgetController final : public BasicWidgetController {
public:
  CollectionWidgetController(const SlotContext& context, const DockWidget& widget);

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { model_->setWidget(widget()); }
  void panelDidClose() override { model_->endChoosing(); }

private:
  /// From the tile, where there is no panel to say what went wrong.
  void open(std::size_t index);
  void addApps();

  std::unique_ptr<CollectionModel> model_;
};

} // namespace tavrin
