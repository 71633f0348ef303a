#pragma once

#include "TavrinCore/Kinds/Files/FilesSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinSlot/Controllers/Files/FolderWidgetController.h"
#include "TavrinWidgetsUI/Files/FileRoll.h"

namespace tavrin {

class FileRollWidgetController final
    : public KindController<FilesSettings, FolderWidgetController> {
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
  void panelDidClose() override;

private:
  void observe();
  /// One of those the tile shows, by its number.
  void openFile(std::size_t index);
  /// What is listed now has been seen.
  void markSeen();

  std::optional<FileRoll> roll_;
  std::vector<TokenPtr> observations_;
};

} // namespace tavrin
