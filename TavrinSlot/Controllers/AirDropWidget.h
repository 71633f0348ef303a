#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinCore/Kinds/AirDrop/AirDropSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinWidgetsUI/AirDrop/AirDropModel.h"

namespace tavrin {

class AirDropWidgetController final : public KindController<AirDropSettings> {
public:
  using KindController::KindController;

  /// The panel opens and asks where to.
  bool openFiles(const std::vector<std::filesystem::path>& paths) override;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { model_->setWidget(widget()); }
  void panelWillOpen() override { model_->refresh(); }

private:
  void chooseFiles();

  std::optional<AirDropModel> model_;
  /// What becomes of the dialog when this goes first.
  Lifetime alive_;
};

} // namespace tavrin
