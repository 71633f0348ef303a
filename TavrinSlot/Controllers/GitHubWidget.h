#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinWidgetsUI/GitHub/GitHubModel.h"

namespace tavrin {

class GitHubWidgetController final : public BasicWidgetController {
public:
  GitHubWidgetController(const SlotContext& context, const DockWidget& widget);

private:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override;
  void panelWillOpen() override { model_.refresh(); }

  /// Opens an item in the browser; addresses of other kinds are not opened.
  void open(const std::string& url) const;

  GitHubModel model_;
};

} // namespace tavrin
