#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinWidgetsUI/Shortcut/ShortcutRunner.h"

namespace tavrin {

class ShortcutWidgetController final : public BasicWidgetController {
public:
  ShortcutWidgetController(const SlotContext& context, const DockWidget& widget);

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { runner_.setWidget(widget()); }

private:
  ShortcutRunner runner_;
};

} // namespace tavrin
