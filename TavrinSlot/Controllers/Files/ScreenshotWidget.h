#pragma once

#include "TavrinCore/Kinds/Files/ScreenshotSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinSlot/Controllers/Files/FolderWidgetController.h"
#include "TavrinWidgetsUI/Files/ScreenshotRoll.h"

namespace tavrin {

class ScreenshotWidgetController final
    : public KindController<ScreenshotSettings, FolderWidgetController> {
public:
  using KindController::KindController;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { roll_->setSettings(settings()); }
  void panelWillOpen() override;

private:
  void observe();
  /// One of those the tile shows, by its number.
  void openFile(std::size_t index);

  std::optional<ScreenshotRoll> roll_;
};

} // namespace tavrin
