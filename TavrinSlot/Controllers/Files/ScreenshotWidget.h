#pragma once

#include "TavrinSlot/Controllers/Files/FolderWidgetController.h"
#include "TavrinWidgetsUI/Files/ScreenshotRoll.h"

namespace tavrin {

class ScreenshotWidgetController final : public FolderWidgetController {
public:
  ScreenshotWidgetController(const SlotContext& context, const DockWidget& widget);

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { roll_.setSettings(settings()); }
  void panelWillOpen() override;

private:
  void observe();
  /// One of those the tile shows, by its number.
  void openFile(std::size_t index) const;
  ScreenshotSettings settings() const;

  /// Pictures are asked for where they are to be drawn.
  mutable ScreenshotRoll roll_;
};

} // namespace tavrin
