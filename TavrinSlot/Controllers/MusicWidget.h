#pragma once

#include "TavrinCore/Kinds/Music/MusicSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinWidgetsUI/Music/MusicModel.h"

namespace tavrin {

class MusicWidgetController final : public KindController<MusicSettings> {
public:
  using KindController::KindController;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { model_->setWidget(widget()); }
  void formatChanged() override;
  void panelWillOpen() override;
  void panelDidClose() override { model_->setCountingSeconds(false); }

private:
  void choose(const std::optional<std::string>& player);

  std::optional<MusicModel> model_;
};

} // namespace tavrin
