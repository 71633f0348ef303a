#pragma once

#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageModel.h"

namespace tavrin {

class ClaudeUsageWidgetController final : public KindController<ClaudeUsageSettings> {
public:
  using KindController::KindController;

private:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { model_->setWidget(widget()); }
  void panelWillOpen() override {
    model_->refresh();
    model_->readDays();
  }

  std::optional<ClaudeUsageModel> model_;
};

} // namespace tavrin
