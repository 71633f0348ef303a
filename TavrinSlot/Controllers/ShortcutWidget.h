#pragma once

#include "TavrinCore/Kinds/Shortcut/ShortcutSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinWidgetsUI/Shortcut/ShortcutRunner.h"

namespace tavrin {

class ShortcutWidgetController final : public KindController<ShortcutSettings> {
public:
  using KindController::KindController;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { runner_->setWidget(widget()); }

private:
  std::optional<ShortcutRunner> runner_;
};

} // namespace tavrin
