#pragma once

#include "TavrinCore/Kinds/Collection/CollectionSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinWidgetsUI/Collection/CollectionModel.h"

namespace tavrin {

class CollectionWidgetController final : public KindController<CollectionSettings> {
public:
  using KindController::KindController;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { model_->setWidget(widget()); }
  void panelDidClose() override { model_->endChoosing(); }

private:
  /// From the tile, where there is no panel to say what went wrong.
  void open(std::size_t index);
  void addApps();

  std::optional<CollectionModel> model_;
};

} // namespace tavrin
