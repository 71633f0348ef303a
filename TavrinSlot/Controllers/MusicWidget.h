#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinWidgetsUI/Music/MusicModel.h"

namespace tavrin {

class MusicWidgetController final : public BasicWidgetController {
public:
  MusicWidgetController(const SlotContext& context, const DockWidget& widget);

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override;
  void panelWillOpen() override;
  void panelDidClose() override { model_.setCountingSeconds(false); }

private:
  void choose(const std::optional<std::string>& player);

  MusicModel model_;
};

} // namespace tavrin
