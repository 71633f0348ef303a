#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinWidgetsUI/AirDrop/AirDropModel.h"

namespace tavrin {

class AirDropWidgetController final : public BasicWidgetController {
public:
  AirDropWidgetController(const SlotContext& context, const DockWidget& widget);
  ~AirDropWidgetController() override;

  /// Files dropped on the tile, as addresses: the panel opens and asks where to.
  void send(const std::vector<std::string>& fileURLs) { model_.take(fileURLs); }

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { model_.setWidget(widget()); }
  void panelWillOpen() override { model_.refresh(); }

private:
  void chooseFiles();

  AirDropModel model_;
  /// What becomes of the dialog when this goes first.
  std::shared_ptr<int> alive_ = std::make_shared<int>();
};

} // namespace tavrin
