#pragma once

#include "TavrinSlot/Controllers/Files/FolderWidgetController.h"
#include "TavrinWidgetsUI/Files/FileRoll.h"

namespace tavrin {

class FileRollWidgetController final : public FolderWidgetController {
public:
  FileRollWidgetController(const SlotContext& context, const DockWidget& widget);

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { roll_.setSettings(settings()); }
  void panelWillOpen() override;
  void panelDidClose() override;

private:
  void observe();
  /// One of those the tile shows, by its number.
  void openFile(std::size_t index) const;
  /// What is listed now has been seen.
  void markSeen();
  FilesSettings settings() const;

  /// Pictures are asked for where they are to be drawn.
  mutable FileRoll roll_;
  std::vector<TokenPtr> observations_;
};

} // namespace tavrin
