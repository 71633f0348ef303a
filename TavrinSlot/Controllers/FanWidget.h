#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinWidgetsUI/Fans/FanSwitch.h"
#include "TavrinWidgetsUI/Fans/FanViews.h"

namespace tavrin {

class FanWidgetController final : public BasicWidgetController {
public:
  FanWidgetController(const SlotContext& context, const DockWidget& widget);

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override { return fanTint; }
  void panelWillOpen() override { fans_.setShown(true); }
  void panelDidClose() override { fans_.setShown(false); }

private:
  QString name() const { return QString::fromStdString(widget().name); }

  FanSwitch fans_;
  std::function<void()> toggle_ = [this] { fans_.setFull(!fans_.isFull()); };
};

} // namespace tavrin
