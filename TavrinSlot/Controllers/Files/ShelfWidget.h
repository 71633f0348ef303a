#pragma once

#include "TavrinCore/Kinds/Files/ShelfSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinWidgetsUI/Files/FileActions.h"
#include "TavrinWidgetsUI/Files/ShelfModel.h"

namespace tavrin {

class ShelfWidgetController final : public KindController<ShelfSettings> {
public:
  using KindController::KindController;

  /// Puts them on the shelf.
  bool openFiles(const std::vector<std::filesystem::path>& paths) override;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { model_->setSettings(settings()); }
  void panelWillOpen() override { model_->refresh(); }

private:
  /// Does `action` and closes the panel, whose work is done.
  template <class Action> void finish(const Action& action);

  std::optional<ShelfModel> model_;
  std::optional<FileActions> actions_;
};

} // namespace tavrin
