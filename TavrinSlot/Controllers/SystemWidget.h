#pragma once

#include "TavrinSlot/Base/BasicWidgetController.h"
#include "TavrinWidgetsUI/Runs/StopwatchViews.h"
#include "TavrinWidgetsUI/System/SystemWidgetModel.h"

namespace tavrin {

/// One controller for the time widgets and the readings of the computer. It stays when the widget
/// becomes another kind of the group, and shows that kind from then on.
class SystemWidgetController final : public BasicWidgetController {
public:
  using BasicWidgetController::BasicWidgetController;

  void togglePanel() override;

protected:
  bool serves(const DockWidget::Kind& kind) const override;
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override;
  void formatChanged() override;
  void panelWillOpen() override;
  void panelDidClose() override { model_->panelChanged(); }

private:
  /// Counts another link from now on, and keeps that.
  void chooseInterface(const std::optional<std::string>& interface);

  /// The tile or the user's wish for motion changed: a pet may move now, or not any more.
  void lookAgain();

  friend struct SystemRows;

  std::optional<SystemWidgetModel> model_;
  TokenPtr motionChanged_;
  StopwatchActions actions_{[this] { model_->toggleStopwatch(); },
                            [this] { model_->lapStopwatch(); },
                            [this] { model_->resetStopwatch(); }};
};

} // namespace tavrin
