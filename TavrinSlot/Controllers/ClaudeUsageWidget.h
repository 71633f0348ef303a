#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageModel.h"

namespace tavrin {

class ClaudeUsageWidgetController final : public BasicWidgetController {
public:
  ClaudeUsageWidgetController(const SlotContext& context, const DockWidget& widget);

private:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { model_.setWidget(widget()); }
  void panelWillOpen() override { model_.refresh(); }

  ClaudeUsageModel model_;
};

} // namespace tavrin
