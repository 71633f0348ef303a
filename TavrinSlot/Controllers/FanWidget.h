#pragma once

#include "TavrinCore/Kinds/Fans/FanSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinWidgetsUI/Fans/FanSwitch.h"
#include "TavrinWidgetsUI/Fans/FanViews.h"

namespace tavrin {

class FanWidgetController final : public KindController<FanSettings> {
public:
  using KindController::KindController;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override { return fanTint; }
  void panelWillOpen() override { fans_->setShown(true); }
  void panelDidClose() override { fans_->setShown(false); }

private:
  QString name() const { return QString::fromStdString(widget().name); }

  std::optional<FanSwitch> fans_;
  std::function<void()> toggle_ = [this] { fans_->setFull(!fans_->isFull()); };
};

} // namespace tavrin
