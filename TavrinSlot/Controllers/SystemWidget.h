#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinWidgetsUI/Runs/StopwatchViews.h"
#include "TavrinWidgetsUI/System/SystemWidgetModel.h"

namespace tavrin {

/// One controller for the time widgets and the readings of the computer. It stays when the widget
/// becomes another kind of the group, and shows that kind from then on.
class SystemWidgetController final : public BasicWidgetController {
public:
  SystemWidgetController(const SlotContext& context, const DockWidget& widget);
  ~SystemWidgetController() override;

  void togglePanel() override;

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override;
  void panelWillOpen() override;
  void panelDidClose() override { model_.panelChanged(); }

private:
  /// Counts another link from now on, and keeps that.
  void chooseInterface(const std::optional<std::string>& interface);

  /// The tile or the user's wish for motion changed: a pet may move now, or not any more.
  void lookAgain();

  SystemWidgetModel model_;
  TokenPtr motionChanged_;
  StopwatchActions actions_;
};

} // namespace tavrin
